#pragma once

// JSON as it is written piece by piece. One writer for all documents: it puts the commas, escapes texts, and
// knows nothing of what they say.

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

#include "framework/std/json_text.h"

namespace tav {

/// Appends to a text that its owner may hand on and clear at any time. Values stand in a list, or in an
/// object behind a key; keys are written as they are.
class JsonWriter {
 public:
  /// In an `htmlElement` no "<" may stand, which could end the element.
  explicit JsonWriter(std::string& text, bool htmlElement = false) : text_(text), html_(htmlElement) {}

  /// Opens an object ("{") or a list ("[") as a new document.
  void begin(char bracket) {
    comma_ = false;
    open(bracket);
  }
  void open(char bracket) {
    separate();
    text_ += bracket;
    comma_ = false;
  }
  void open(std::string_view key, char bracket) {
    writeKey(key);
    open(bracket);
  }
  void close(char bracket) {
    text_ += bracket;
    comma_ = true;
  }
  /// Lets the next value, or the closing bracket, begin a line.
  void line() {
    if (comma_) text_ += ',';
    comma_ = false;
    text_ += '\n';
  }
  void closeOnLine(char bracket) {
    text_ += '\n';
    close(bracket);
  }

  void value(std::string_view text) {
    separate();
    append(text);
  }
  void value(const std::string& text) { value(std::string_view(text)); }
  void value(const char* text) { value(std::string_view(text)); }
  void value(bool flag) { raw(flag ? "true" : "false"); }
  template <std::integral Number> void value(Number number) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    raw({digits, end.ptr});
  }
  /// Lets the next value be the member of this key.
  void key(std::string_view key) { writeKey(key); }
  template <class T> void member(std::string_view key, const T& content) {
    writeKey(key);
    value(content);
  }
  /// A member that is left out when its text is empty.
  void optional(std::string_view key, std::string_view text) {
    if (!text.empty()) member(key, text);
  }
  /// JSON that is written already: a value, or members of an object.
  void raw(std::string_view json) {
    separate();
    text_ += json;
  }
  void raw(std::string_view key, std::string_view json) {
    writeKey(key);
    raw(json);
  }

 private:
  void separate() {
    if (comma_) text_ += ',';
    comma_ = true;
  }
  void writeKey(std::string_view key) {
    separate();
    append(key);
    text_ += ':';
    comma_ = false;
  }
  void append(std::string_view value) {
    const std::size_t begin = text_.size();
    appendJsonText(text_, value);
    if (!html_) return;
    for (std::size_t i = text_.find('<', begin); i != text_.npos; i = text_.find('<', i))
      text_.replace(i, 1, "\\u003c");
  }

  std::string& text_;
  bool html_;
  bool comma_ = false;  // whether a comma stands in front of the next value or key
};

}  // namespace tav

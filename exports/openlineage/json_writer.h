#pragma once

#include <string>
#include <string_view>

#include "framework/std/json_text.h"

namespace tav {

/// Appends JSON to a text and puts the commas.
class JsonWriter {
 public:
  explicit JsonWriter(std::string& text) : text_(text) {}

  /// Opens an object or array ("{", "[") that is a value or, with a key, a member.
  void open(char bracket) {
    separate();
    text_ += bracket;
  }
  void open(std::string_view key, char bracket) {
    writeKey(key);
    text_ += bracket;
  }
  void close(char bracket) { text_ += bracket; }
  void member(std::string_view key, std::string_view value) {
    writeKey(key);
    appendJsonText(text_, value);
  }
  /// JSON that is written already: a value, or members of an object.
  void raw(std::string_view json) {
    separate();
    text_ += json;
  }

 private:
  void separate() {
    const char last = text_.empty() ? '{' : text_.back();
    if (last != '{' && last != '[' && last != ':') text_ += ',';
  }
  void writeKey(std::string_view key) {
    separate();
    appendJsonText(text_, key);
    text_ += ':';
  }

  std::string& text_;
};

}  // namespace tav

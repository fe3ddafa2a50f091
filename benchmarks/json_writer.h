#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace tav::bench {

/// Writes JSON as the designers of tabular definitions do: two blanks a level, a member a line.
class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}
  ~JsonWriter() { flush(); }
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  /// Opens an object ('{') or array ('['); the name is empty for an element of an array and for the root.
  void open(std::string_view name, char sign);
  void close(char sign);
  /// A text, or a number or flag as it is written.
  void text(std::string_view name, std::string_view value);
  void plain(std::string_view name, std::string_view value);
  /// A text of several lines as an array of them.
  void lines(std::string_view name, std::string_view value);

  /// Bytes given out so far.
  std::uint64_t size() const { return flushed_ + buffer_.size(); }
  void flush();

 private:
  void begin(std::string_view name);
  void quote(std::string_view value);

  std::ostream& out_;
  std::string buffer_;
  std::uint64_t flushed_ = 0;
  unsigned depth_ = 0;
  bool first_ = true;
};

/// An object or array that ends with the block it is declared in.
class JsonObject {
 public:
  explicit JsonObject(JsonWriter& to, std::string_view name = {}) : to_(to) { to_.open(name, '{'); }
  ~JsonObject() { to_.close('}'); }
  JsonObject(const JsonObject&) = delete;
  JsonObject& operator=(const JsonObject&) = delete;

 private:
  JsonWriter& to_;
};

class JsonArray {
 public:
  JsonArray(JsonWriter& to, std::string_view name) : to_(to) { to_.open(name, '['); }
  ~JsonArray() { to_.close(']'); }
  JsonArray(const JsonArray&) = delete;
  JsonArray& operator=(const JsonArray&) = delete;

 private:
  JsonWriter& to_;
};

}  // namespace tav::bench

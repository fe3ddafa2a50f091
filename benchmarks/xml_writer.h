#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace tav::bench {

/// Writes indented XML as the designers of real definitions do: two blanks a level, an element a line.
class XmlWriter {
 public:
  /// Without a stream nothing is written and only the bytes are counted.
  explicit XmlWriter(std::ostream* out) : out_(out) {}
  ~XmlWriter() { flush(); }
  XmlWriter(const XmlWriter&) = delete;
  XmlWriter& operator=(const XmlWriter&) = delete;

  /// Opens an element; `attributes` is written as it is, with its leading blank.
  void open(std::string_view tag, std::string_view attributes = {});
  void close(std::string_view tag);
  /// An element that holds text; the text is escaped.
  void leaf(std::string_view tag, std::string_view text, std::string_view attributes = {});
  /// An element without contents.
  void empty(std::string_view tag, std::string_view attributes = {});
  /// Text that is no element: written as it is.
  void raw(std::string_view text);

  /// Bytes given out so far.
  std::uint64_t size() const { return flushed_ + buffer_.size(); }
  void flush();

 private:
  void begin(std::string_view tag, std::string_view attributes);
  void line();

  std::ostream* out_;
  std::string buffer_;
  std::uint64_t flushed_ = 0;
  unsigned depth_ = 0;
};

/// An element that ends with the block it is declared in.
class Element {
 public:
  Element(XmlWriter& to, std::string_view tag, std::string_view attributes = {}) : to_(to), tag_(tag) {
    to_.open(tag_, attributes);
  }
  ~Element() { to_.close(tag_); }
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

 private:
  XmlWriter& to_;
  std::string_view tag_;
};

/// ` name="value"`, the value escaped; line ends become character references, which a parser keeps.
std::string attribute(std::string_view name, std::string_view value);

}  // namespace tav::bench

#include "benchmarks/xml_writer.h"

namespace tav::bench {
namespace {

constexpr std::size_t kFlushAt = 1 << 20;

void appendEscaped(std::string& to, std::string_view text, bool inAttribute) {
  for (const char c : text) {
    switch (c) {
      case '&':
        to += "&amp;";
        break;
      case '<':
        to += "&lt;";
        break;
      case '>':
        to += "&gt;";
        break;
      case '"':
        to += inAttribute ? "&quot;" : "\"";
        break;
      case '\r':
        to += "&#xD;";
        break;
      case '\n':
        to += inAttribute ? "&#xA;" : "\n";
        break;
      default:
        to += c;
    }
  }
}

}  // namespace

void XmlWriter::begin(std::string_view tag, std::string_view attributes) {
  buffer_.append(std::size_t{2} * depth_, ' ');
  buffer_ += '<';
  buffer_ += tag;
  buffer_ += attributes;
}

void XmlWriter::line() {
  buffer_ += '\n';
  if (buffer_.size() >= kFlushAt) flush();
}

void XmlWriter::open(std::string_view tag, std::string_view attributes) {
  begin(tag, attributes);
  buffer_ += '>';
  line();
  ++depth_;
}

void XmlWriter::close(std::string_view tag) {
  --depth_;
  buffer_.append(std::size_t{2} * depth_, ' ');
  buffer_ += "</";
  buffer_ += tag;
  buffer_ += '>';
  line();
}

void XmlWriter::leaf(std::string_view tag, std::string_view text, std::string_view attributes) {
  begin(tag, attributes);
  buffer_ += '>';
  appendEscaped(buffer_, text, false);
  buffer_ += "</";
  buffer_ += tag;
  buffer_ += '>';
  line();
}

void XmlWriter::empty(std::string_view tag, std::string_view attributes) {
  begin(tag, attributes);
  buffer_ += " />";
  line();
}

void XmlWriter::raw(std::string_view text) {
  buffer_ += text;
}

void XmlWriter::flush() {
  if (out_) out_->write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  flushed_ += buffer_.size();
  buffer_.clear();
}

std::string attribute(std::string_view name, std::string_view value) {
  std::string text = " ";
  text += name;
  text += "=\"";
  appendEscaped(text, value, true);
  text += '"';
  return text;
}

}  // namespace tav::bench

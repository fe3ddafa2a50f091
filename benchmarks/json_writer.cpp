#include "benchmarks/json_writer.h"

#include <algorithm>

namespace tav::bench {
namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 20;

}  // namespace

void JsonWriter::begin(std::string_view name) {
  if (!first_) buffer_ += ',';
  if (depth_ > 0) (buffer_ += '\n').append(std::size_t{2} * depth_, ' ');
  first_ = false;
  if (name.empty()) return;
  quote(name);
  buffer_ += ": ";
}

void JsonWriter::open(std::string_view name, char sign) {
  begin(name);
  buffer_ += sign;
  ++depth_;
  first_ = true;
}

void JsonWriter::close(char sign) {
  --depth_;
  if (!first_) (buffer_ += '\n').append(std::size_t{2} * depth_, ' ');
  buffer_ += sign;
  first_ = false;
  if (buffer_.size() >= kBuffer) flush();
}

void JsonWriter::text(std::string_view name, std::string_view value) {
  begin(name);
  quote(value);
}

void JsonWriter::plain(std::string_view name, std::string_view value) {
  begin(name);
  buffer_ += value;
}

void JsonWriter::lines(std::string_view name, std::string_view value) {
  const JsonArray array(*this, name);
  for (std::size_t at = 0; at <= value.size();) {
    const std::size_t end = std::min(value.find('\n', at), value.size());
    text({}, value.substr(at, end - at));
    at = end + 1;
  }
}

void JsonWriter::quote(std::string_view value) {
  buffer_ += '"';
  for (const char c : value) {
    if (c == '"' || c == '\\') buffer_ += '\\';
    if (c == '\n')
      buffer_ += "\\n";
    else
      buffer_ += c;
  }
  buffer_ += '"';
}

void JsonWriter::flush() {
  out_ << buffer_;
  flushed_ += buffer_.size();
  buffer_.clear();
}

}  // namespace tav::bench

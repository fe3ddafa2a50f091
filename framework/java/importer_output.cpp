#include "framework/java/importer_output.h"

#include <algorithm>

#include "framework/std/text.h"

namespace tav {
namespace {

constexpr const char* kOtherOutput = "TAVJAVA_I0008";
constexpr std::size_t kKeptHead = 4096;
constexpr std::size_t kLongestSummary = 500;
constexpr std::size_t kKeptTail = std::size_t{16} << 10;
constexpr std::string_view kCut = " ...";
constexpr std::string_view kIdentifierCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";

TAVLogEvent eventOf(std::string_view line) {
  const std::size_t first = line.find('\t');
  const std::size_t second = first == line.npos ? first : line.find('\t', first + 1);
  if (second != line.npos)
    if (const auto severity = severityOf(line.substr(0, first)))
      return {line.substr(second + 1), line.substr(first + 1, second - first - 1), *severity, TAVString()};
  return {line, kOtherOutput, kSeverityInfo, TAVString()};
}

bool isFailure(std::string_view line) {
  const std::size_t close = line.find("] ");
  return line.starts_with('[') && close != line.npos && close > 1 &&
         line.find_first_not_of(kIdentifierCharacters, 1) == close;
}

}  // namespace

void MessageLines::add(std::string_view bytes) {
  for (std::size_t end = bytes.find('\n'); end != bytes.npos; end = bytes.find('\n')) {
    keep(bytes.substr(0, end));
    finish();
    bytes.remove_prefix(end + 1);
  }
  keep(bytes);
}

void MessageLines::keep(std::string_view part) {
  const std::size_t room = kLongestLine - line_.size();
  cut_ = cut_ || part.size() > room;
  line_ += part.substr(0, room);
}

void MessageLines::finish() {
  if (line_.ends_with('\r')) line_.pop_back();
  const bool said = !trimmed(line_).empty();
  if (cut_) line_ += kCut;
  if (said) report_(eventOf(line_));
  line_.clear();
  cut_ = false;
}

void ErrorText::add(std::string_view bytes) {
  head_ += bytes.substr(0, kKeptHead - head_.size());
  tail_ += bytes;
  if (tail_.size() > 2 * kKeptTail) tail_.erase(0, tail_.size() - kKeptTail);
}

std::string ErrorText::failure() const {
  std::string found;
  for (const std::string_view line : linesOf(tail_))
    if (isFailure(line)) found = line;
  return found;
}

std::string ErrorText::summary() const {
  std::string shown;
  for (const std::string_view line : linesOf(head_)) {
    if (line.starts_with("\tat ") || trimmed(line).empty()) continue;
    shown += (shown.empty() ? "" : "; ") + std::string(line);
  }
  if (shown.size() > kLongestSummary || head_.size() == kKeptHead)
    shown = shown.substr(0, kLongestSummary) + std::string(kCut);
  return shown;
}

}  // namespace tav

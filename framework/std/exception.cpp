#include "framework/std/exception.h"

#include <execinfo.h>

#include <array>
#include <cstdlib>
#include <memory>

TAVException::TAVException(TAVString message, TAVString stackTrace)
    : message_(std::move(message)), stackTrace_(std::move(stackTrace)) {}

TAVException::TAVException(const TAVException&) = default;

TAVException::~TAVException() = default;

TAVString buildStackTrace() {
  std::array<void*, 64> frames{};
  const int count = backtrace(frames.data(), static_cast<int>(frames.size()));
  const auto free = [](char** lines) { std::free(lines); };  // NOLINT(cppcoreguidelines-no-malloc)
  const std::unique_ptr<char*, decltype(free)> lines(backtrace_symbols(frames.data(), count), free);
  std::string text;
  if (!lines) return {};
  for (int i = 1; i < count; ++i) {  // the innermost frame is this function
    text += lines.get()[i];
    text += "\n";
  }
  return text;
}

void tav::fail(std::string_view identifier, std::string_view text) {
  const TAVString message = "[" + TAVString(identifier) + "] " + TAVString(text);
  throw TAVException(message, buildStackTrace());
}

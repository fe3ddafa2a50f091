#include "framework/std/log.h"

#include <algorithm>
#include <array>

namespace tav {

namespace {

constexpr std::array<std::string_view, 6> kNames{"FATAL", "ERROR", "WARNING", "STATUS", "INFO", "DEBUG"};

}  // namespace

std::string_view severityName(std::int32_t severity) noexcept {
  const auto index = static_cast<std::size_t>(severity - kSeverityFatal);
  return severity >= kSeverityFatal && index < kNames.size() ? kNames[index] : std::string_view();
}

std::optional<std::int32_t> severityOf(std::string_view name) noexcept {
  const auto* found = std::find(kNames.begin(), kNames.end(), name);
  if (found == kNames.end()) return std::nullopt;
  return kSeverityFatal + static_cast<std::int32_t>(found - kNames.begin());
}

}  // namespace tav

TAVLog::~TAVLog() = default;

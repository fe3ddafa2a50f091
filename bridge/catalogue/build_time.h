#pragma once

#include <cstdint>

namespace tav {

/// When the plug-in was built, in seconds since 1970-01-01 UTC: a commit's time rather than a clock's, so
/// that a build can be repeated. Its definition is made by build_time.cmake.
std::int64_t getBuildTime() noexcept;

}  // namespace tav

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tav {

/// Whether a text is a time in the form in which models and estates carry it, "2026-03-08T10:00:00Z".
bool isUtcTime(std::string_view text);
/// The seconds since the beginning of 1970 of a time in that form.
std::int64_t utcSeconds(std::string_view time);

}  // namespace tav

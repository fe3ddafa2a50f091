#pragma once

#include <string>
#include <string_view>

namespace tav {

/// Whether a text is a time in the form in which models and estates carry it, "2026-03-08T10:00:00Z".
bool isUtcTime(std::string_view text);

}  // namespace tav

#pragma once

// The names that a saved model's document uses beside those of classes, attributes and links.

#include <string_view>

namespace tav {

inline constexpr std::string_view kFormatAttribute = "format";
inline constexpr std::string_view kFormat = "tav-model/1";
inline constexpr std::string_view kElementTypeAttribute = "elementType";
inline constexpr std::string_view kIdAttribute = "id";
inline constexpr std::string_view kNameAttribute = "name";

}  // namespace tav

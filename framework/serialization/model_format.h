#pragma once

// The names that a saved model's document uses beside those of classes, attributes and links.

#include <string_view>

namespace tav {

inline constexpr std::string_view kFormatAttribute = "format";
inline constexpr std::string_view kFormat = "tav-model/1";
inline constexpr std::string_view kElementTypeAttribute = "elementType";
inline constexpr std::string_view kIdAttribute = "id";
inline constexpr std::string_view kNameAttribute = "name";

/// The content that holds details. It has an element type as all contents have, and no class.
inline constexpr std::string_view kDetailsContent = "TAVDetailsContent";
inline constexpr int kDetailsElementType = 296;
/// Its parts, and what their elements say.
inline constexpr std::string_view kItems = "items";
inline constexpr std::string_view kRelations = "relations";
inline constexpr std::string_view kSettings = "settings";
inline constexpr std::string_view kOpenNames = "openNames";
inline constexpr std::string_view kPassedOver = "passedOver";
inline constexpr std::string_view kOwner = "owner";
inline constexpr std::string_view kText = "text";
inline constexpr std::string_view kLanguage = "language";
inline constexpr std::string_view kFrom = "from";
inline constexpr std::string_view kTo = "to";
inline constexpr std::string_view kSettingsOfItem = "item";
inline constexpr std::string_view kSettingItem = "ref";
inline constexpr std::string_view kSetting = "setting";
inline constexpr std::string_view kValue = "value";
inline constexpr std::string_view kOpenName = "openName";
inline constexpr std::string_view kState = "state";
inline constexpr std::string_view kNote = "note";
inline constexpr std::string_view kCount = "count";

}  // namespace tav

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
/// The relations of one kind and text: "TO:FROM" for each, "FROM" alone where the end before is meant. All
/// numbers tell how far an id lies behind the one before at the same end of the same element.
inline constexpr std::string_view kEnds = "ends";
/// The settings of one name; each value with the items that have it, by how far their ids lie behind the one
/// before.
inline constexpr std::string_view kSetting = "setting";
inline constexpr std::string_view kIs = "is";
inline constexpr std::string_view kValue = "value";
inline constexpr std::string_view kOf = "of";
/// The item of an open name.
inline constexpr std::string_view kRef = "ref";
/// One relation, and the settings of one item: each an attribute, or an element "setting" with a name.
inline constexpr std::string_view kFrom = "from";
inline constexpr std::string_view kTo = "to";
inline constexpr std::string_view kSettingsOfItem = "item";
inline constexpr std::string_view kOpenName = "openName";
inline constexpr std::string_view kState = "state";
inline constexpr std::string_view kNote = "note";
inline constexpr std::string_view kCount = "count";

}  // namespace tav

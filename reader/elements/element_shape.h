#pragma once

// What an element tells by its shape alone, without a rule for its path.

#include <string_view>

#include "framework/dom/dom.h"

namespace tav {

/// The type that an element names, unless what it holds tells as much.
std::string_view typeOf(const TAVDOMElement& element);
/// The name of the attribute with that type, and its namespace.
inline constexpr std::string_view kTypeAttribute = "type";
inline constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

bool isLeaf(const TAVDOMElement& element);
/// Whether an element holds the ID of another.
bool isReference(const TAVDOMElement& element);
/// Whether an element is there to hold others of one kind: Attributes, Hierarchies, Aliases.
bool isList(const TAVDOMElement& element);
/// What tells an element from others of its list: a language, an ID that it refers to, or its name. Null when
/// nothing does.
const TAVDOMElement* findLabel(const TAVDOMElement& element);
/// Whether a label says in which language its element is.
bool isLanguage(const TAVDOMElement& label);
/// Whether two elements hold the same, designers' notes aside.
bool areEqual(const TAVDOMElement& a, const TAVDOMElement& b);

}  // namespace tav

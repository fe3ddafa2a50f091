#pragma once

#include <string_view>

#include "framework/dom/dom.h"

namespace tav {

/// What annotations of designers hold that only say how they draw: nobody reads it.
extern const UnkeptContent kDrawings;
/// Whether an annotation only says how a designer draws what it belongs to.
bool isDesignerLayout(const TAVDOMElement& annotation);
/// The name of an annotation, without the address in front that all of a designer's have.
std::string_view annotationName(std::string_view name);

}  // namespace tav

#pragma once

#include <span>
#include <string_view>

#include "framework/dom/element.h"

namespace tav {

/// Where an element begins.
struct ElementsAround {
  const DomName& grandparent;
  const DomName& parent;
  std::span<const TAVDOMElement> before;  ///< the elements in front of it in its parent
};

/// The elements whose content is checked and not kept: those of a tag of which a function says so. It is
/// asked for each of them, so what it costs must not grow with the elements around.
struct UnkeptContent {
  std::string_view tag;  ///< as written
  bool (*isUnkept)(const ElementsAround& around) = nullptr;
};

}  // namespace tav

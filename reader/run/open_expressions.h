#pragma once

// Expressions whose names are resolved once everything that they may name is there.

#include <string_view>
#include <vector>

#include "framework/details/details.h"

namespace tav {

/// An MDX expression of the details. Its text lives as long as the document.
struct OpenExpression {
  ItemId item;            ///< whose it is
  std::string_view text;  ///< as written
  RelationKind relation;  ///< from what the text names to the item
  /// Whose names it uses: a cube, with its own names for dimensions, or, where there is none, a dimension.
  const TAVCube* cube = nullptr;
  const TAVDimension* dimension = nullptr;
};

}  // namespace tav

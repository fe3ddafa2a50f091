#pragma once

// In what the IDs of an element are looked up: the dimension, cube or view that it belongs to, or that it
// names itself.

#include <deque>

#include "framework/dom/dom.h"
#include "reader/elements/id_registry.h"

namespace tav {

/// Makes scopes and keeps them: references point to them until they are resolved.
class IdScopes {
 public:
  [[nodiscard]] const IdScope& root() { return scopes_.emplace_back(); }
  /// The scope of what an element holds; `outer` where it adds nothing.
  const IdScope& of(const TAVDOMElement& element, const ElementRule& rule, const IdScope& outer);
  /// That of what comes from where a linked measure group does.
  const IdScope& linked(const IdScope& scope);
  /// That of another dimension of the cube.
  const IdScope& inCubeDimension(const IdScope& scope, std::string_view cubeDimension);
  /// That of expressions below a dimension or cube, whose names they use.
  const IdScope& naming(const IdScope& scope, const TAVModelObject* object);

 private:
  std::deque<IdScope> scopes_;
};

}  // namespace tav

#pragma once

// What became of the elements of a definition, for the details: they say the rest of what an element holds,
// of the object that it was made into.

#include <unordered_map>

#include "framework/dom/dom.h"
#include "framework/model/model.h"
#include "framework/std/pointer_map.h"
#include "reader/run/id_index.h"

namespace tav {

/// Objects of the model by the elements that they were made from. Empty when nobody asks for details.
class ReadElements {
 public:
  void add(const TAVDOMElement& element, const TAVModelObject& object) {
    objects_.tryEmplace(&element, &object);
  }
  [[nodiscard]] const TAVModelObject* find(const TAVDOMElement& element) const {
    const auto* found = objects_.find(&element);
    return found ? *found : nullptr;
  }

  /// Calculated measures, which have no element of their own, by their cube and name.
  void addCalculated(const TAVCube& cube, const TAVMeasure& measure) {
    calculated_[&cube].add(measure, foldCase(measure.getName().view()));
  }
  [[nodiscard]] const TAVMeasure* findCalculated(const TAVCube& cube, std::string_view name) const {
    const auto found = calculated_.find(&cube);
    return found == calculated_.end() ? nullptr : found->second.find(foldCase(name));
  }

 private:
  PointerMap<const TAVModelObject*> objects_;  // by element
  std::unordered_map<const TAVCube*, IdIndex<const TAVMeasure>> calculated_;
};

}  // namespace tav

#pragma once

#include <vector>

#include "framework/model/object.h"

/// What depthTraversal does with each object that it visits.
class TAV_API TAVTraversalOperation {
 public:
  TAVTraversalOperation() = default;
  TAVTraversalOperation(const TAVTraversalOperation&) = delete;
  TAVTraversalOperation& operator=(const TAVTraversalOperation&) = delete;
  virtual ~TAVTraversalOperation();
  virtual void visit(TAVObject& object) = 0;
};

/// Collects every object that is of the class with this element type code or of a subclass, in the order of
/// the walk. A code that no class has collects nothing.
class TAV_API TAVObjectCollector : public TAVTraversalOperation {
 public:
  explicit TAVObjectCollector(TAVElementType elementType) : class_(tav::classOfCode(elementType)) {}
  ~TAVObjectCollector() override;
  void visit(TAVObject& object) override;
  [[nodiscard]] const std::vector<TAVObject*>& getObjects() const noexcept { return objects_; }

 private:
  tav::ClassId class_;
  std::vector<TAVObject*> objects_;
};

#include <algorithm>

#include "framework/model/class_info.h"
#include "framework/model/end_walk.h"
#include "framework/model/model.h"
#include "framework/model/traversal.h"

// What an object can be asked about its place in the model. These follow links, of which object.h knows
// nothing.

TAVObject* TAVObject::getParent() const {
  for (const tav::LinkInfo& link : tav::classInfo(classId()).links) {
    if (link.row->kind != tav::LinkKind::container) continue;
    if (TAVObject* parent = tav::EndWalk(*link.row, *this).next()) return parent;
  }
  return nullptr;
}

TAVModel* TAVObject::getRootModel() {
  TAVObject* object = this;
  while (object && !tav::is<TAVModel>(*object)) object = object->getParent();
  return static_cast<TAVModel*>(object);
}

TAVString TAVObject::getPath(bool fromRoot) const {
  std::vector<const TAVObject*> steps;
  for (const TAVObject* object = this; object && !tav::is<TAVModel>(*object); object = object->getParent())
    steps.push_back(object);
  TAVString path(fromRoot ? "/" : "");
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    if (step != steps.rbegin()) path += "/";
    path += (*step)->getName();
  }
  return path;
}

void TAVObject::depthTraversal(TAVTraversalOperation& operation) {
  std::vector<TAVObject*> waiting{this};
  while (!waiting.empty()) {
    TAVObject& object = *waiting.back();
    waiting.pop_back();
    operation.visit(object);
    const auto mark = static_cast<std::ptrdiff_t>(waiting.size());
    for (const tav::LinkInfo& link : tav::classInfo(object.classId()).parts)
      tav::forEachAt(*link.row, object, [&](TAVObject& part) { waiting.push_back(&part); });
    std::reverse(waiting.begin() + mark, waiting.end());
  }
}

TAVTraversalOperation::~TAVTraversalOperation() = default;

TAVObjectCollector::~TAVObjectCollector() = default;

void TAVObjectCollector::visit(TAVObject& object) {
  if (class_ != tav::kNoClass && tav::derives(object.classId(), class_)) objects_.push_back(&object);
}

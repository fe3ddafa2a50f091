#include "dimensions/hierarchy.h"

#include "dimensions/level.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

/// Moves a level to the end of its dimension's levels, which are thus in the order of their last use.
void moveToEnd(TAVLevel& level, TAVDimension& dimension) {
  add<&TAVDimension::levels>(dimension, take(level));
}

}  // namespace

void importHierarchy(ImportRun& run, const TAVDOMElement& element, TAVDimension& dimension,
                     const AttributeRecords& attributes) {
  auto made = make<TAVHierarchy>();
  made->hierarchyType = TAVHierarchyType(TAVHierarchyType::kLevelBased);
  setNameDescription(element, *made);
  TAVHierarchy& hierarchy = dimension.addHierarchy(std::move(made));

  TAVHierarchyLevelAssociation* last = nullptr;
  const TAVDOMElement* levels = element.getFirstElement(kLevels);
  for (std::int32_t i = 0; levels && i < levels->getElementCount(); ++i) {
    TAVLevel* level = importLevel(run, *levels->getElement(i), dimension, attributes);
    if (!level) continue;
    moveToEnd(*level, dimension);
    TAVHierarchyLevelAssociation& association =
        hierarchy.addHierarchyLevelAssociation(make<TAVHierarchyLevelAssociation>());
    association.addLevel(*level);
    note(run, *levels->getElement(i), association);
    // Places in the document: what is no level keeps its number.
    association.position = static_cast<std::uint16_t>(i);
    if (!last) hierarchy.addTopHierarchyLevelAssociation(association);
    last = &association;
  }
  if (last) hierarchy.addBottomHierarchyLevelAssociation(*last);

  run.records.add(hierarchy);
  note(run, element, hierarchy);
  dimension.addDefaultHierarchy(hierarchy);
}

}  // namespace tav

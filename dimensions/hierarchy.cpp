#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

/// Moves a level to the end of its dimension's levels, which are thus in the order of their last use.
void moveToEnd(TAVLevel& level, TAVDimension& dimension) {
  tav::add<&TAVDimension::levels>(dimension, tav::take(level));
}

}  // namespace

void TAVSQLServerXMLAImportBridge::importHierarchy(const TAVDOMElement& element, TAVDimension& dimension) {
  auto made = tav::make<TAVHierarchy>();
  made->hierarchyType = TAVHierarchyType(TAVHierarchyType::kLevelBased);
  setNameIdDescription(element, *made);
  made->nativeId = "";
  TAVHierarchy& hierarchy = dimension.addHierarchy(std::move(made));

  TAVHierarchyLevelAssociation* last = nullptr;
  const TAVDOMElement* levels = element.getFirstElement(kLevels);
  for (std::int32_t i = 0; levels && i < levels->getElementCount(); ++i) {
    TAVLevel* level = importLevel(*levels->getElement(i), dimension);
    if (!level) continue;
    moveToEnd(*level, dimension);
    TAVHierarchyLevelAssociation& association =
        hierarchy.addHierarchyLevelAssociation(tav::make<TAVHierarchyLevelAssociation>());
    association.addLevel(*level);
    association.position = static_cast<std::uint16_t>(i);
    if (!last) hierarchy.addTopHierarchyLevelAssociation(association);
    last = &association;
  }
  if (last) hierarchy.addBottomHierarchyLevelAssociation(*last);

  registerObject(hierarchy);
  dimension.addDefaultHierarchy(hierarchy);
}

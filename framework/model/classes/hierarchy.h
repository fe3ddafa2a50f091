#pragma once

#include "framework/model/classes/model_object.h"
#include "framework/model/link.h"

/// A hierarchy of a dimension: an ordered use of its levels.
class TAV_API TAVHierarchy : public TAVModelObject {
 public:
  TAVHierarchy() : TAVModelObject(tav::classId<TAVHierarchy>) {}
  TAVHierarchyType hierarchyType;
  tav::Container<TAVDimension> dimension;
  tav::Reference<TAVHierarchyLevelAssociation> topHierarchyLevelAssociation;
  tav::Reference<TAVHierarchyLevelAssociation> bottomHierarchyLevelAssociation;
  tav::Parts<TAVHierarchyLevelAssociation> hierarchyLevelAssociations;
  tav::BackReference<TAVDimension> defaultOf;

  TAVHierarchyLevelAssociation& addHierarchyLevelAssociation(
      tav::Owned<TAVHierarchyLevelAssociation> association);
  void addTopHierarchyLevelAssociation(TAVHierarchyLevelAssociation& association);
  void addBottomHierarchyLevelAssociation(TAVHierarchyLevelAssociation& association);
};

template <> struct tav::Meta<TAVHierarchy> {
  static constexpr std::array attributes{attribute<&TAVHierarchy::hierarchyType>("hierarchyType")};
  static constexpr std::array links{
      link<&TAVHierarchy::dimension>("dimension", "hierarchies"),
      link<&TAVHierarchy::topHierarchyLevelAssociation>("topHierarchyLevelAssociation", "topOf"),
      link<&TAVHierarchy::bottomHierarchyLevelAssociation>("bottomHierarchyLevelAssociation", "bottomOf"),
      link<&TAVHierarchy::hierarchyLevelAssociations>("hierarchyLevelAssociations", "hierarchy"),
      link<&TAVHierarchy::defaultOf>("defaultOf", "defaultHierarchy")};
};

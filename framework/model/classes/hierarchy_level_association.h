#pragma once

#include "framework/model/classes/model_object.h"
#include "framework/model/link.h"

/// A hierarchy's use of a level.
class TAV_API TAVHierarchyLevelAssociation : public TAVModelObject {
 public:
  TAVHierarchyLevelAssociation() : TAVModelObject(tav::classId<TAVHierarchyLevelAssociation>) {}
  /// The place of the level in the definition's list of levels, from 0; gaps are possible.
  std::uint16_t position = 0;
  tav::Container<TAVHierarchy> hierarchy;
  tav::Reference<TAVLevel> level;
  tav::BackReference<TAVHierarchy> topOf;
  tav::BackReference<TAVHierarchy> bottomOf;

  /// Puts an association under its hierarchy, behind those that it has, and lets it delete it from now on.
  static TAVHierarchyLevelAssociation& addHierarchy(tav::Owned<TAVHierarchyLevelAssociation> association,
                                                    TAVHierarchy& hierarchy);
  void addLevel(TAVLevel& used);
};

template <> struct tav::Meta<TAVHierarchyLevelAssociation> {
  static constexpr std::array attributes{attribute<&TAVHierarchyLevelAssociation::position>("position")};
  static constexpr std::array links{
      link<&TAVHierarchyLevelAssociation::hierarchy>("hierarchy", "hierarchyLevelAssociations"),
      link<&TAVHierarchyLevelAssociation::level>("level", "hierarchyLevelAssociations"),
      link<&TAVHierarchyLevelAssociation::topOf>("topOf", "topHierarchyLevelAssociation"),
      link<&TAVHierarchyLevelAssociation::bottomOf>("bottomOf", "bottomHierarchyLevelAssociation")};
};

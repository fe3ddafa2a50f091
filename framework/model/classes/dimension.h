#pragma once

#include "framework/model/classes/classifier.h"
#include "framework/model/link.h"

/// A dimension; those that stand for measure groups, calculated measures and KPIs hold measures.
class TAV_API TAVDimension : public TAVClassifier {
 public:
  TAVDimension() : TAVClassifier(tav::classId<TAVDimension>) {}
  TAVDimensionType dimensionType;
  /// True only on a dimension that stands for a measure group.
  bool measureGroup = false;
  tav::Reference<TAVHierarchy> defaultHierarchy;
  tav::Parts<TAVHierarchy> hierarchies;
  tav::Parts<TAVLevel> levels;
  tav::BackReferences<TAVCubeDimensionAssociation> cubeDimensionAssociations;

  TAVHierarchy& addHierarchy(tav::Owned<TAVHierarchy> hierarchy);
  void addDefaultHierarchy(TAVHierarchy& hierarchy);
  void removeDefaultHierarchy();
};

template <> struct tav::Meta<TAVDimension> {
  static constexpr std::array attributes{attribute<&TAVDimension::dimensionType>("dimensionType"),
                                         attribute<&TAVDimension::measureGroup>("measureGroup")};
  static constexpr std::array links{
      link<&TAVDimension::defaultHierarchy>("defaultHierarchy", "defaultOf"),
      link<&TAVDimension::hierarchies>("hierarchies", "dimension"),
      link<&TAVDimension::levels>("levels", "dimension"),
      link<&TAVDimension::cubeDimensionAssociations>("cubeDimensionAssociations", "dimension")};
};

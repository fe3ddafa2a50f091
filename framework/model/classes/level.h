#pragma once

#include "framework/model/classes/classifier.h"
#include "framework/model/link.h"

/// A level of a dimension, shared by the hierarchies that use it.
class TAV_API TAVLevel : public TAVClassifier {
 public:
  TAVLevel() : TAVClassifier(tav::classId<TAVLevel>) {}
  tav::Container<TAVDimension> dimension;
  tav::Reference<TAVLevelAttribute> defaultLevelAttribute;
  tav::Parts<TAVLevelKey> levelKeys;
  tav::BackReferences<TAVHierarchyLevelAssociation> hierarchyLevelAssociations;

  /// Puts a level under its dimension, which deletes it from now on.
  static TAVLevel& addDimension(tav::Owned<TAVLevel> level, TAVDimension& dimension);
  /// Takes the level out of its dimension and gives it to the caller; its other links stay. Null when it is
  /// in none, and so not the caller's to take.
  [[nodiscard]] tav::Owned<TAVLevel> removeDimension();
  void addDefaultLevelAttribute(TAVLevelAttribute& attribute);
  void removeDefaultLevelAttribute();
};

template <> struct tav::Meta<TAVLevel> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVLevel::dimension>("dimension", "levels"),
      link<&TAVLevel::defaultLevelAttribute>("defaultLevelAttribute", "defaultOf"),
      link<&TAVLevel::levelKeys>("levelKeys", "level"),
      link<&TAVLevel::hierarchyLevelAssociations>("hierarchyLevelAssociations", "level")};
};

#pragma once

#include "framework/model/classes/model_object.h"
#include "framework/model/link.h"

/// The key of a level: the level attributes that tell its members apart.
class TAV_API TAVLevelKey : public TAVModelObject {
 public:
  TAVLevelKey() : TAVModelObject(tav::classId<TAVLevelKey>) {}
  tav::Container<TAVLevel> level;
  tav::References<TAVLevelAttribute> levelAttributes;

  /// Puts a key under its level, which deletes it from now on.
  static TAVLevelKey& addLevel(tav::Owned<TAVLevelKey> key, TAVLevel& level);
  void addLevelAttribute(TAVLevelAttribute& attribute);
};

template <> struct tav::Meta<TAVLevelKey> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{link<&TAVLevelKey::level>("level", "levelKeys"),
                                    link<&TAVLevelKey::levelAttributes>("levelAttributes", "levelKeys")};
};

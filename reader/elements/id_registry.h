#pragma once

// What the IDs of a definition mean, once its elements have been read.

#include <array>
#include <optional>
#include <string>
#include <unordered_map>

#include "framework/details/details.h"
#include "framework/std/spellings.h"
#include "reader/elements/element_rules.h"

namespace tav {

/// Where an element stands, as far as IDs that it holds are looked up by it. All of it is IDs, as what they
/// mean may come later in the document.
struct IdScope {
  std::string_view view;
  std::string_view dimension;
  std::string_view cube;
  std::string_view cubeDimension;  ///< of the cube; where there is one, attributes are its
  std::string_view group;
  std::string_view structure;
  // Where the objects of a linked measure group come from.
  std::string_view sourceCube;
  std::string_view sourceGroup;
  bool isBeyond = false;  ///< whether what is named stands in another database
  bool isSourceBeyond = false;
  // Whose names expressions use.
  const TAVCube* cubeObject = nullptr;
  const TAVDimension* dimensionObject = nullptr;
};

/// The items and objects of a definition by their IDs; of those with one ID the first is found. IDs must live
/// as long.
class IdRegistry {
 public:
  explicit IdRegistry(Details& details) : details_(details) {}

  void add(IdSpace space, const IdScope& scope, std::string_view id, ItemId item);
  /// Notes which dimension of the database a cube shows.
  void addCubeDimension(const IdScope& scope, std::string_view id, std::string_view dimensionId);

  /// The item that an ID means there, or nothing.
  [[nodiscard]] std::optional<ItemId> find(IdSpace space, const IdScope& scope, std::string_view id);
  /// Whether there is what such an ID is looked up in. Where it is missing, all that it would hold is.
  [[nodiscard]] bool hasPlace(IdSpace space, const IdScope& scope);
  /// The ID there that differs least from this one; empty when none comes near. No IDs are added after it.
  [[nodiscard]] std::string_view nearest(IdSpace space, const IdScope& scope, std::string_view id);
  /// The attribute of the dimension that a cube shows; kNoItem when there is none.
  [[nodiscard]] ItemId findInDimension(const IdScope& scope, std::string_view attributeId);
  /// The cube's own attribute for one of the dimension that it shows; null when the model has none.
  [[nodiscard]] const TAVModelObject* findCubeAttribute(const IdScope& scope, std::string_view attributeId);

 private:
  /// The number of what IDs of one kind stand in: a dimension, a cube, a measure group.
  using Place = std::uint32_t;
  struct Key {
    Place place;
    std::string_view id;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const noexcept {
      return std::hash<std::string_view>()(key.id) ^ (std::size_t{key.place} * 0x9E3779B97F4A7C15U);
    }
  };
  struct KnownPlace {
    std::string_view outer;
    std::string_view inner;
    Place place = 0;
    bool isKnown = false;
  };
  /// What a dimension of a cube shows.
  struct Shown {
    std::string_view dimensionId;
    const TAVAliasClassifier* alias = nullptr;  // null when the model has none
  };

  Place placeOf(IdSpace space, std::string_view outer, std::string_view inner);
  Place placeIn(IdSpace space, const IdScope& scope);
  [[nodiscard]] std::optional<ItemId> findExactly(IdSpace space, const IdScope& scope, std::string_view id);
  /// The same in a dimension of the database.
  [[nodiscard]] std::optional<ItemId> findIn(std::string_view dimensionId, IdSpace space,
                                             std::string_view id);
  /// Null when the cube has no such dimension.
  [[nodiscard]] const Shown* shownIn(const IdScope& scope);

  /// Where such an ID stands when a dimension of a cube shows what it means.
  Place shownPlace(IdSpace space, const IdScope& scope);
  void fillSpellings();

  Details& details_;
  std::unordered_map<Key, ItemId, KeyHash> items_;
  std::unordered_map<Key, Shown, KeyHash> shown_;
  std::unordered_map<std::string, Place> places_;
  std::unordered_map<Place, Spellings> spellings_;  // made for the first ID that means nothing
  // Most IDs stand where the one before them does.
  std::array<KnownPlace, kIdSpaceCount> lastPlaces_;
  const Shown* lastShown_ = nullptr;
  std::string_view lastCube_;
  std::string_view lastDimension_;
};

}  // namespace tav

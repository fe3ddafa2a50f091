#pragma once

// What the IDs of a definition mean, once its elements have been read.

#include <optional>
#include <string>
#include <unordered_map>

#include "framework/details/details.h"
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

/// The items and objects of a definition by their IDs; of those with one ID the first is found.
class IdRegistry {
 public:
  explicit IdRegistry(Details& details) : details_(details) {}

  void add(IdSpace space, const IdScope& scope, std::string_view id, ItemId item);
  /// Notes which dimension of the database a cube shows.
  void addCubeDimension(const IdScope& scope, std::string_view id, std::string_view dimensionId);

  /// The item that an ID means there, or nothing.
  [[nodiscard]] std::optional<ItemId> find(IdSpace space, const IdScope& scope, std::string_view id);
  /// The attribute of the dimension that a cube shows; kNoItem when there is none.
  [[nodiscard]] ItemId findInDimension(const IdScope& scope, std::string_view attributeId) const;
  /// The cube's own attribute for one of the dimension that it shows; null when the model has none.
  [[nodiscard]] const TAVModelObject* findCubeAttribute(const IdScope& scope, std::string_view attributeId);

 private:
  [[nodiscard]] std::optional<ItemId> findExactly(IdSpace space, const IdScope& scope,
                                                  std::string_view id) const;
  [[nodiscard]] std::optional<std::string_view> dimensionOf(const IdScope& scope) const;

  Details& details_;
  mutable std::string key_;  // that is looked up, for its memory
  std::unordered_map<std::string, ItemId> items_;
  std::unordered_map<std::string, std::string_view> dimensionsOfCubes_;
};

}  // namespace tav

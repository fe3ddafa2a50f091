#pragma once

// What names in MDX mean in one cube, by the names that the cube itself has for its dimensions: for what a
// definition says beyond its model.

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "expressions/model_names.h"
#include "expressions/script_names.h"
#include "framework/details/details.h"
#include "framework/model/model.h"
#include "framework/std/spellings.h"

namespace tav {

/// One part of `[Date].[Calendar].&[2009].Children`.
struct ReferencePart {
  std::string name;  ///< without its brackets
  std::string folded;
  bool isBare = false;  ///< written without brackets
  bool isKey = false;
};

std::vector<ReferencePart> partsOfReference(std::string_view reference);

/// What a name leads to.
struct NameMeaning {
  std::vector<const TAVModelObject*> objects;
  std::vector<const TAVDimensionAttribute*> attributes;  ///< of the database, which those in `objects` show
  std::vector<ItemId> items;                             ///< of what only the details have
  std::optional<OpenNameState> open;                     ///< when it is neither an attribute nor a measure
  std::string note;                                      ///< what it is, or the nearest spelling
  const TAVDimension* dimension = nullptr;  ///< the dimension of the database that it leads through
  const TAVDimension* taken = nullptr;      ///< another one of that name, which the model takes it for
  bool isAsInModel = false;                 ///< the model finds the same dimension
  const TAVClassifier* whole = nullptr;     ///< a dimension of which no part is named
};

/// Attributes and hierarchies of the database's dimensions by name, letter case ignored.
class DimensionNames {
 public:
  struct Names {
    std::unordered_map<std::string, const TAVDimensionAttribute*> attributes;
    std::unordered_map<std::string, TAVHierarchy*> hierarchies;
    std::unordered_map<std::string, const TAVDimensionAttribute*> levels;  ///< by what their keys are
  };
  const Names& of(const TAVDimension& dimension);

 private:
  std::unordered_map<const TAVDimension*, Names> names_;  // of those asked for
};

/// The names of a cube; or of a dimension, for expressions of its own. Letter case is ignored, and the first
/// object of a name counts.
class CubeNames {
 public:
  CubeNames(const TAVCube& cube, ModelNames& model, DimensionNames& dimensions);
  CubeNames(const TAVDimension& dimension, ModelNames& model, DimensionNames& dimensions);
  CubeNames(const CubeNames&) = delete;
  CubeNames& operator=(const CubeNames&) = delete;

  /// Whether a definition is read, or only known to come.
  enum class Moment : bool { ahead, now };
  /// A set, a member of a dimension, or a measure that the model lacks, which a script defines.
  void define(std::string_view name, ItemId item, bool isSet, Moment moment);
  /// From here on the name means what it meant before that was defined, or nothing.
  void drop(std::string_view name);
  /// A name whose meaning stands outside this definition, and what it is; `item` is what stands for it here,
  /// or kNoItem.
  void defineBeyond(std::string_view name, ItemId item, std::string_view what);

  NameMeaning find(std::string_view reference);
  /// What a function that names something in quotes gives: KPIValue("x"), MeasureGroupMeasures("x").
  NameMeaning findOfFunction(std::string_view function, std::string_view argument);

  /// The calculated measure of that name which the model has, or null.
  [[nodiscard]] const TAVFeature* findCalculated(std::string_view name) const;
  [[nodiscard]] const TAVModelObject* findMeasureGroup(std::string_view name) const;
  /// The measures of groups and the calculated ones, in order; and the values of KPIs.
  [[nodiscard]] const std::vector<const TAVFeature*>& measures() const { return measures_; }
  [[nodiscard]] const std::vector<const TAVFeature*>& kpiValues() const { return kpiValues_; }
  [[nodiscard]] bool isMeasure(const TAVModelObject* object) const { return isMeasure_.contains(object); }

  /// Whether an expression names that dimension as a whole for the first time.
  bool isNewWhole(const TAVClassifier& dimension) { return wholes_.insert(&dimension).second; }

  /// CURRENTCUBE, or the cube's own name, before a name.
  void leaveOutCube(std::vector<ReferencePart>& parts) const;

 private:
  struct Role {
    const TAVDimension* dimension;
    const TAVAliasClassifier* alias;  // null for the dimension itself
  };
  struct Beyond {
    ItemId item;
    std::string what;
  };
  struct Nested {
    const Role* role;
    TAVHierarchy* hierarchy;                 // one of these
    const TAVDimensionAttribute* attribute;  // is null
  };

  bool isOwnName(const std::vector<ReferencePart>& parts);
  void addRole(std::string_view name, Role role);
  void addFolder(const TAVDesignPackage& folder);
  void findInRole(const Role& role, const std::vector<ReferencePart>& parts, NameMeaning& meaning);
  void addNested();
  void findNested(const std::vector<ReferencePart>& parts, NameMeaning& meaning);
  void findBelow(const Nested& nested, const std::vector<ReferencePart>& parts, std::size_t place,
                 NameMeaning& meaning);
  static void addAttribute(const Role& role, const TAVDimensionAttribute* attribute, NameMeaning& meaning);
  void findMeasure(const std::vector<ReferencePart>& parts, NameMeaning& meaning);
  void findMeasureByName(const ReferencePart& part, NameMeaning& meaning);
  const Defined* findDefinedMeasure(const std::string& folded);
  const Defined* findDefined(const std::vector<ReferencePart>& parts);
  bool addDefined(const std::vector<ReferencePart>& parts, NameMeaning& meaning);
  void findMistake(const ReferencePart& part, NameMeaning& meaning);

  ModelNames& model_;
  DimensionNames& dimensions_;
  std::string cubeName_;
  std::unordered_map<std::string, Role> roles_;
  std::vector<const Role*> inOrder_;                // the same
  std::unordered_map<std::string, Nested> nested_;  // hierarchies, attributes, levels without their dimension
  bool hasNested_ = false;                          // few names need them
  ScriptNames defined_;                             // by whole names
  ScriptNames abbreviated_;                         // by names without levels, parents or the dimension
  ScriptNames newMeasures_;
  std::unordered_map<std::string, Beyond> beyond_;
  std::unordered_map<std::string, const TAVFeature*> measuresByName_;
  std::unordered_map<std::string, const TAVFeature*> calculatedByName_;
  std::unordered_map<std::string, const TAVClassifier*> groups_;
  std::unordered_map<std::string, const TAVClassifier*> kpis_;
  std::vector<const TAVFeature*> measures_;
  std::vector<const TAVFeature*> kpiValues_;
  std::unordered_set<const TAVModelObject*> isMeasure_;
  std::unordered_set<const TAVClassifier*> wholes_;
  Spellings spellings_;
};

}  // namespace tav

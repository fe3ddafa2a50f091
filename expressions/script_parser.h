#pragma once

#include <unordered_set>

#include "expressions/model_names.h"
#include "framework/expression/analyzer.h"
#include "framework/std/hash_set.h"

/// Resolves the names in the MDX expressions of one cube's measures: dimension attributes and levels,
/// measures of measure groups, calculated measures, and the values of KPIs. It links the attributes of levels
/// and the KPI values itself; what a name stands for otherwise is returned to the caller.
class cScriptParser : public TAVExpressionAnalyzer {
 public:
  /// `cubePackage` is the package that holds the cube and its folders; `names` belongs to the model and, like
  /// the log, outlives the parser.
  cScriptParser(TAVLog* log, TAVDesignPackage& cubePackage, tav::ModelNames& names);
  ~cScriptParser() override;

  /// Makes `map` the one whose expression is parsed next, with no unresolved names yet.
  void setCurrentMap(TAVFeatureMap& map);
  /// The references of the current map's expression that mean nothing, in the order of the text.
  [[nodiscard]] const TAVStringHashSet& getUnresolvedNames() const { return unresolvedNames_; }

  void getSrcElements(TAVOperationNode* operation, TAVVector& result) override;
  void getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) override;
  TAVFeature* getDstFeature(TAVClassifier* classifier, const TAVString& name, int reserved) override;

  /// Links the measure of a KPI when the function is one of the four that give a KPI's values and has one
  /// argument, the KPI's name; does nothing for any other function.
  virtual void getFunctionElements(const TAVString& functionName, const TAVVector& arguments,
                                   TAVElementType elementType, TAVArgumentType argumentType,
                                   TAVVector& result);
  /// Appends to `result` the feature that the reference `text` means, or links the attributes of the levels
  /// that it names, or notes it as unresolved.
  virtual void getElementByName(const TAVString& text, const TAVString& name, int partCount,
                                TAVElementType elementType, TAVArgumentType argumentType,
                                const TAVVector& scope, TAVVector& result);

 private:
  using Features = std::vector<TAVFeature*>;

  [[nodiscard]] bool mayNameKpi(std::string_view text) const;
  void findInDimension(TAVDimension& dimension, const TAVString& member, const TAVString& level,
                       Features& found, TAVVector& result);
  void findLevelAttributes(const TAVHierarchy& hierarchy, const TAVString& level, Features& found);
  TAVFeature* findMeasure(const TAVString& name) const;
  void linkSource(TAVFeature& feature);

  TAVDesignPackage& cubePackage_;
  tav::ModelNames& names_;
  tav::MeasureNames measures_;
  std::unordered_set<std::size_t> kpiNameLengths_;
  TAVStringHashSet unresolvedNames_;
  TAVFeatureMap* currentMap_ = nullptr;
};

#pragma once

// Reads the expressions of lineage maps and asks a subclass what their names mean.

#include "framework/expression/enumerations.h"
#include "framework/expression/nodes.h"
#include "framework/model/classes/classifier.h"
#include "framework/model/classes/condition.h"
#include "framework/model/classes/feature_map.h"
#include "framework/std/log.h"
#include "framework/std/vector.h"

/// Parses expressions and links the features that they name. A subclass resolves the names. Objects in the
/// vectors are TAVFeature*, or in a scope TAVClassifier*.
class TAV_API TAVExpressionAnalyzer {
 public:
  /// An analyzer of one language. `log` may be null.
  TAVExpressionAnalyzer(TAVLog* log, TAVExpressionToolType tool, TAVExpressionLangType language);
  TAVExpressionAnalyzer(const TAVExpressionAnalyzer&) = default;
  TAVExpressionAnalyzer& operator=(const TAVExpressionAnalyzer&) = default;
  virtual ~TAVExpressionAnalyzer();

  /// Called for every function and method call, before its arguments: appends the features that the call
  /// itself reads. The base appends none.
  virtual void getSrcElements(TAVOperationNode* operation, TAVVector& result);
  /// Called for every reference: appends the features that it names. `scope` lists the classifiers that the
  /// expression may use; it is empty when that is not known.
  virtual void getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) = 0;
  /// The one feature of `classifier` that `name` means as a destination, or null. The number is reserved.
  virtual TAVFeature* getDstFeature(TAVClassifier* classifier, const TAVString& name, int reserved) = 0;
  /// The feature of `classifier` that stands for the condition of a statement, or null. The base has none.
  virtual TAVCondition* getDstCondition(TAVClassifier* classifier);
  /// Told what a statement writes to. The base ignores it.
  virtual void setDstClassifier(TAVElementNode* node);
  /// Told of a call that the analyzer cannot interpret. The base ignores it.
  virtual void setUnknownOperation(TAVOperationNode* operation);
  /// Told of each expression before any part of it is visited. The base ignores it.
  virtual void startStatement(TAVStatementNode* statement);
  /// Whether `*` stands for this feature among others. The base says yes.
  virtual bool isStarCandidate(TAVFeature* feature, bool qualified);
  /// Whether the statement at hand defines the classifier itself. The base says no.
  virtual bool isClassifierDefined(TAVClassifier* classifier);
  /// Whether an expression that is one reference may be taken over as a plain copy. The base says no.
  virtual bool optimizeSimpleExpression();

  /// Reads the map's `operation`: every call and every reference in the order of the text, a call before its
  /// arguments. What a visit returns becomes a source feature of the map at once, its owner a source
  /// classifier of the map's classifier map, each once. A syntax error is reported and ends nothing: what can
  /// be read before and after it is. A null map is passed over.
  void parse(TAVFeatureMap* map);

  [[nodiscard]] TAVExpressionToolType getToolType() const noexcept { return tool_; }
  [[nodiscard]] TAVExpressionLangType getLangType() const noexcept { return language_; }

  /// The map that the caller is resolving; null when it is not said.
  [[nodiscard]] TAVFeatureMap* getCurrentFeatureMap() const noexcept { return currentFeatureMap_; }
  void setCurrentFeatureMap(TAVFeatureMap* map) noexcept { currentFeatureMap_ = map; }
  void clearCurrentFeatureMap() noexcept { currentFeatureMap_ = nullptr; }

  /// Called at most once per expression, before its parts are visited: the path of the feature that it
  /// computes (empty when there is none), the place as "line 1, column 7" (columns count characters), and
  /// what was expected there. The base logs the warning TAVEXPR_W0001.
  virtual void setParsingError(const TAVString& feature, const TAVString& place, const TAVString& expected);

 private:
  TAVLog* log_;
  TAVExpressionToolType tool_;
  TAVExpressionLangType language_;
  TAVFeatureMap* currentFeatureMap_ = nullptr;
};

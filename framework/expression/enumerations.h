#pragma once

// What an analyzer is told about the text that it reads and the names that it resolves.

#include "framework/model/enumerations.h"

/// The kind of tool that the expressions come from.
class TAVExpressionToolType : public tav::Enumeration<TAVExpressionToolType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVExpressionToolType";
  static constexpr int kDatabase = 0;
  static constexpr int kAnalysisServices = 5;
  static constexpr int kLast = 5;
  static constexpr bool isValid(int value) { return value == kDatabase || value == kAnalysisServices; }
};

/// The language of the expressions.
class TAVExpressionLangType : public tav::Enumeration<TAVExpressionLangType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVExpressionLangType";
  static constexpr int kSql = 0;
  static constexpr int kMdx = 6;
  static constexpr int kLast = 6;
  static constexpr bool isValid(int value) { return value == kSql || value == kMdx; }
};

/// Which side of the lineage a name is resolved for.
class TAVArgumentType : public tav::Enumeration<TAVArgumentType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVArgumentType";
  static constexpr int kSource = 1;
  static constexpr int kDestination = 2;
  static constexpr int kLast = 2;
};

#pragma once

// The rules that models are held against: one row each, which all that reads, explains and tells of rules
// goes by.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lineage/lineage_graph.h"
#include "lineage/model_diff.h"

namespace re2 {
class RE2;
}

namespace tav {

enum class CheckSeverity : std::uint8_t { off, info, warning, error };
inline constexpr std::size_t kCheckSeverityCount = 4;
/// "off", "info", "warning", "error".
std::string_view checkSeverityName(CheckSeverity severity) noexcept;
std::optional<CheckSeverity> checkSeverityOf(std::string_view name) noexcept;

/// A finding that a team has accepted.
struct CheckException {
  std::string object;  ///< its qualified name or path; "*" stands for any characters
  std::string reason;
};

/// How one rule is applied.
struct CheckSettings {
  CheckSeverity severity = CheckSeverity::off;
  std::size_t floor = 0;        ///< in percent
  std::vector<NodeKind> kinds;  ///< empty for those that the rule is about by itself
  std::string pattern;
  std::shared_ptr<const re2::RE2> regex;  ///< the pattern, ready to be matched; null without one
  std::vector<CheckException> exceptions;
};

/// What is wrong with a model, or with one object of it.
struct CheckFinding {
  std::string object;  ///< the qualified name, and empty for the model itself
  std::string path;
  std::string kind;  ///< for people
  std::string message;
};

/// What rules look at.
struct CheckSubject {
  const LineageGraph& graph;
  const LineageGraph* before;  ///< the model as it was; null when nothing is compared
  const ModelDiff* diff;       ///< with `before`
};

struct CheckRule {
  std::string_view id;  ///< in rule files and outcomes: "measure-format"
  std::string_view summary;
  CheckSeverity severity;  ///< without a rule file
  bool needsBefore = false;
  // The options that it has beside the severity and exceptions.
  std::size_t floor = 0;
  std::span<const NodeKind> kinds;  ///< those that it is about by itself
  bool hasPattern = false;
  std::vector<CheckFinding> (*find)(const CheckSubject& subject, const CheckSettings& settings);
};

/// All rules, in the order in which they are told.
std::span<const CheckRule> checkRules() noexcept;

}  // namespace tav

#pragma once

// Models held against rules, and the outcome in the forms that build servers and reviews take.

#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "checks/rule_file.h"
#include "checks/rules.h"

namespace tav {

/// What a rule found in a model.
struct CheckOutcome {
  const CheckRule* rule;
  CheckSeverity severity;
  std::vector<CheckFinding> findings;
  std::size_t accepted = 0;  ///< findings that exceptions took away
};

/// A model, and the outcome of each rule that was applied to it, in their order.
struct CheckedModel {
  std::string name;
  std::string input;
  std::vector<CheckOutcome> outcomes;
};

/// Applies the rules of `rules` for this model. Passwords are masked in all that it finds.
CheckedModel checkModel(const CheckSubject& subject, const std::string& input, const CheckRuleFile& rules);

/// Whether any model has a finding of this severity or a worse one.
bool hasFindings(std::span<const CheckedModel> models, CheckSeverity severity);

/// For people. Safe for a terminal.
void writeCheckText(std::span<const CheckedModel> models, std::ostream& out);
/// `{"format":"xmla-check/1","models":[{"name","input","findings":[{"rule","severity","object","path","kind",
/// "message"}]}]}`.
void writeCheckJson(std::span<const CheckedModel> models, std::ostream& out);
/// A test suite for each model with a test case for each rule, as build servers read results of tests.
void writeCheckJunit(std::span<const CheckedModel> models, std::ostream& out);
/// SARIF 2.1.0.
void writeCheckSarif(std::span<const CheckedModel> models, std::ostream& out);
/// Commands that GitHub Actions and Azure Pipelines turn into annotations.
void writeCheckGithub(std::span<const CheckedModel> models, std::ostream& out);
void writeCheckAzure(std::span<const CheckedModel> models, std::ostream& out);

}  // namespace tav

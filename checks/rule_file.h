#pragma once

// Rule files: which rules hold, how strictly, and for which models.

#include <string>
#include <vector>

#include "checks/rules.h"

namespace tav {

class CheckRuleFile {
 public:
  /// The rules as they are without a file.
  CheckRuleFile();

  /// Reads a file in YAML, or in JSON, which is YAML too. Throws Message::rulesNotRead with file, line and
  /// column for what is no such file, and names the nearest of the words that would do.
  static CheckRuleFile load(const std::string& path);

  /// The settings of all rules for one model, in the order of checkRules().
  [[nodiscard]] std::vector<CheckSettings> settingsFor(const std::string& input,
                                                       const std::string& name) const;

  /// A file that says what holds without one, with comments.
  static std::string text();

 private:
  friend class RuleFileReader;

  /// Rules that hold for models whose input or name is like `match`, instead of those before.
  struct Part {
    std::string match;
    std::vector<std::optional<CheckSettings>> settings;  ///< by rule; nothing where it says nothing
  };
  std::vector<CheckSettings> settings_;
  std::vector<Part> parts_;
};

/// Whether an exception is about a finding.
bool isAccepted(const CheckSettings& settings, const CheckFinding& finding);

}  // namespace tav

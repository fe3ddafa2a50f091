#include "checks/checks.h"

#include <algorithm>

namespace tav {

CheckedModel checkModel(const CheckSubject& subject, const std::string& input, const CheckRuleFile& rules) {
  CheckedModel model{subject.graph.modelName(), input, {}};
  const std::vector<CheckSettings> settings = rules.settingsFor(input, model.name);
  for (std::size_t i = 0; i < settings.size(); ++i) {
    const CheckRule& rule = checkRules()[i];
    if (settings[i].severity == CheckSeverity::off || (rule.needsBefore && !subject.diff)) continue;
    CheckOutcome outcome{&rule, settings[i].severity, rule.find(subject, settings[i]), 0};
    outcome.accepted = std::erase_if(
        outcome.findings, [&](const CheckFinding& finding) { return isAccepted(settings[i], finding); });
    model.outcomes.push_back(std::move(outcome));
  }
  return model;
}

bool hasFindings(std::span<const CheckedModel> models, CheckSeverity severity) {
  return std::any_of(models.begin(), models.end(), [&](const CheckedModel& model) {
    return std::any_of(model.outcomes.begin(), model.outcomes.end(), [&](const CheckOutcome& outcome) {
      return outcome.severity >= severity && !outcome.findings.empty();
    });
  });
}

}  // namespace tav

// The outcome for people.

#include "checks/checks.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

/// How many findings there are of each severity, in words: "2 errors, 1 warning".
std::string countText(std::span<const CheckedModel> models) {
  std::array<std::size_t, kCheckSeverityCount> counts{};
  std::size_t accepted = 0;
  for (const CheckedModel& model : models) {
    for (const CheckOutcome& outcome : model.outcomes) {
      counts[static_cast<std::size_t>(outcome.severity)] += outcome.findings.size();
      accepted += outcome.accepted;
    }
  }
  std::string text;
  const auto add = [&](std::size_t count, std::string_view one, std::string_view many) {
    if (count == 0) return;
    text.append(text.empty() ? "" : ", ")
        .append(std::to_string(count))
        .append(" ")
        .append(count == 1 ? one : many);
  };
  add(counts[3], "error", "errors");
  add(counts[2], "warning", "warnings");
  add(counts[1], "note", "notes");
  add(accepted, "accepted", "accepted");
  return text.empty() ? "Nothing was found." : text;
}

void writeOutcome(const CheckOutcome& outcome, std::ostream& out) {
  if (outcome.findings.empty()) return;
  out << "  " << checkSeverityName(outcome.severity) << "  " << outcome.rule->id << ": "
      << outcome.rule->summary << '\n';
  for (const CheckFinding& finding : outcome.findings) {
    out << "      ";
    if (!finding.object.empty()) out << finding.kind << ' ' << printable(finding.object) << ": ";
    out << printable(finding.message) << '\n';
  }
}

}  // namespace

void writeCheckText(std::span<const CheckedModel> models, std::ostream& out) {
  for (const CheckedModel& model : models) {
    out << printable(model.name) << "  " << printable(model.input) << '\n';
    for (const CheckOutcome& outcome : model.outcomes) writeOutcome(outcome, out);
  }
  out << countText(models) << '\n';
}

}  // namespace tav

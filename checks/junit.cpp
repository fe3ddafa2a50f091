// The outcome as results of tests, which build servers collect and show.

#include "checks/checks.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

bool isFailure(const CheckOutcome& outcome) {
  return outcome.severity >= CheckSeverity::warning && !outcome.findings.empty();
}

/// As text or the value of an attribute, without what no document may hold.
void append(std::string& text, std::string_view value) {
  for (const char c : printable(value)) {
    if (c == '&')
      text += "&amp;";
    else if (c == '<')
      text += "&lt;";
    else if (c == '>')
      text += "&gt;";
    else if (c == '"')
      text += "&quot;";
    else
      text += c;
  }
}

void attribute(std::string& text, std::string_view name, std::string_view value) {
  text.append(" ").append(name).append("=\"");
  append(text, value);
  text += '"';
}

std::string textOf(const CheckFinding& finding) {
  return finding.object.empty() ? finding.message
                                : finding.kind + " " + finding.object + ": " + finding.message;
}

void appendCase(std::string& text, const CheckedModel& model, const CheckOutcome& outcome) {
  text += "    <testcase";
  attribute(text, "classname", model.name);
  attribute(text, "name", outcome.rule->id);
  if (outcome.findings.empty()) {
    text += "/>\n";
    return;
  }
  text += ">\n";
  if (isFailure(outcome)) {
    text += "      <failure";
    attribute(text, "type", checkSeverityName(outcome.severity));
    attribute(text, "message", textOf(outcome.findings.front()));
    text += ">";
  } else {
    text += "      <system-out>";
  }
  for (const CheckFinding& finding : outcome.findings) {
    append(text, textOf(finding));
    text += '\n';
  }
  text.append(isFailure(outcome) ? "</failure>" : "</system-out>").append("\n    </testcase>\n");
}

}  // namespace

void writeCheckJunit(std::span<const CheckedModel> models, std::ostream& out) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
  for (const CheckedModel& model : models) {
    std::size_t failures = 0;
    for (const CheckOutcome& outcome : model.outcomes) failures += isFailure(outcome) ? 1 : 0;
    text += "  <testsuite";
    attribute(text, "name", model.input);
    attribute(text, "tests", std::to_string(model.outcomes.size()));
    attribute(text, "failures", std::to_string(failures));
    text += ">\n";
    for (const CheckOutcome& outcome : model.outcomes) appendCase(text, model, outcome);
    text += "  </testsuite>\n";
  }
  out << text << "</testsuites>\n";
}

}  // namespace tav

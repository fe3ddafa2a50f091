#include "checks/checks.h"
#include "framework/std/json_writer.h"

namespace tav {

void writeCheckJson(std::span<const CheckedModel> models, std::ostream& out) {
  std::string text;
  JsonWriter json(text);
  json.begin('{');
  json.member("format", "xmla-check/1");
  json.open("models", '[');
  for (const CheckedModel& model : models) {
    json.line();
    json.open('{');
    json.member("name", model.name);
    json.member("input", model.input);
    json.open("findings", '[');
    for (const CheckOutcome& outcome : model.outcomes) {
      for (const CheckFinding& finding : outcome.findings) {
        json.line();
        json.open('{');
        json.member("rule", outcome.rule->id);
        json.member("severity", checkSeverityName(outcome.severity));
        json.member("object", finding.object);
        json.member("path", finding.path);
        json.member("kind", finding.kind);
        json.member("message", finding.message);
        json.close('}');
      }
    }
    json.close(']');
    json.close('}');
  }
  json.close(']');
  json.close('}');
  out << text << '\n';
}

}  // namespace tav

// The outcome in SARIF 2.1.0, which code reviews show.

#include "checks/checks.h"
#include "framework/std/json_writer.h"

namespace tav {
namespace {

std::string_view levelOf(CheckSeverity severity) {
  if (severity == CheckSeverity::off) return "none";
  return severity == CheckSeverity::info ? "note" : checkSeverityName(severity);
}

/// A path as a relative reference: every byte that could mean something else there is escaped.
std::string uriOf(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain = "-._~/";
  std::string uri;
  for (const char c : path) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       kPlain.find(c) != kPlain.npos;
    const auto byte = static_cast<unsigned char>(c);
    if (plain)
      uri += c;
    else
      uri.append({'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
  }
  return uri;
}

void writeText(JsonWriter& json, const char* key, std::string_view text) {
  json.open(key, '{');
  json.member("text", text);
  json.close('}');
}

void writeRules(JsonWriter& json) {
  json.open("rules", '[');
  for (const CheckRule& rule : checkRules()) {
    json.line();
    json.open('{');
    json.member("id", rule.id);
    writeText(json, "shortDescription", rule.summary);
    json.open("defaultConfiguration", '{');
    json.member("enabled", rule.severity != CheckSeverity::off);
    json.member("level", levelOf(rule.severity));
    json.close('}');
    json.close('}');
  }
  json.close(']');
}

void writeResult(JsonWriter& json, const CheckedModel& model, const CheckOutcome& outcome,
                 const CheckFinding& finding) {
  json.line();
  json.open('{');
  json.member("ruleId", outcome.rule->id);
  json.member("ruleIndex", outcome.rule - checkRules().data());
  json.member("level", levelOf(outcome.severity));
  writeText(json, "message",
            finding.object.empty() ? finding.message
                                   : finding.kind + " " + finding.object + ": " + finding.message);
  json.open("locations", '[');
  json.open('{');
  json.open("physicalLocation", '{');
  json.open("artifactLocation", '{');
  json.member("uri", uriOf(model.input));
  json.close('}');
  json.close('}');
  if (!finding.path.empty()) {
    json.open("logicalLocations", '[');
    json.open('{');
    json.member("fullyQualifiedName", finding.path);
    json.member("kind", finding.kind);
    json.close('}');
    json.close(']');
  }
  json.close('}');
  json.close(']');
  json.open("partialFingerprints", '{');
  json.member("finding/v1", model.name + "\n" + model.input + "\n" + finding.path + "\n" + finding.object +
                                "\n" + finding.message);
  json.close('}');
  json.close('}');
}

}  // namespace

void writeCheckSarif(std::span<const CheckedModel> models, std::ostream& out) {
  std::string text;
  JsonWriter json(text);
  json.begin('{');
  json.member("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
  json.member("version", "2.1.0");
  json.open("runs", '[');
  json.open('{');
  json.open("tool", '{');
  json.open("driver", '{');
  json.member("name", "xmla-bridge");
  writeRules(json);
  json.close('}');
  json.close('}');
  json.open("results", '[');
  for (const CheckedModel& model : models)
    for (const CheckOutcome& outcome : model.outcomes)
      for (const CheckFinding& finding : outcome.findings) writeResult(json, model, outcome, finding);
  json.close(']');
  json.close('}');
  json.close(']');
  json.close('}');
  out << text << '\n';
}

}  // namespace tav

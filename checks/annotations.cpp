// Lines that build servers take out of a log: GitHub's workflow commands, the logging commands of Azure
// Pipelines.

#include <array>

#include "checks/checks.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

struct Escape {
  char character;
  std::string_view text;
};

/// Escapes what ends a command or a part of it; names are data, and may hold any of it.
std::string escaped(std::string_view text, std::span<const Escape> escapes) {
  std::string result;
  for (const char c : printable(text)) {
    std::string_view replaced(&c, 1);
    for (const Escape& escape : escapes)
      if (escape.character == c) replaced = escape.text;
    result += replaced;
  }
  return result;
}

/// Commands of Azure Pipelines begin with "##", anywhere in a line.
std::string azureText(std::string_view text, std::span<const Escape> escapes) {
  std::string result;
  for (const char c : escaped(text, escapes)) {
    if (c == '#' && result.ends_with('#')) result += ' ';
    result += c;
  }
  return result;
}

constexpr std::array kGithubText{Escape{'%', "%25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"}};
constexpr std::array kGithubProperty{Escape{'%', "%25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"},
                                     Escape{':', "%3A"}, Escape{',', "%2C"}};
constexpr std::array kAzureText{Escape{'%', "%AZP25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"}};
constexpr std::array kAzureProperty{Escape{'%', "%AZP25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"},
                                    Escape{';', "%3B"}, Escape{']', "%5D"}};

std::string messageOf(const CheckedModel& model, const CheckFinding& finding) {
  std::string text = model.name + ": ";
  if (!finding.object.empty()) text.append(finding.kind).append(" ").append(finding.object).append(": ");
  return text + finding.message;
}

template <class Write> void writeFindings(std::span<const CheckedModel> models, Write write) {
  for (const CheckedModel& model : models)
    for (const CheckOutcome& outcome : model.outcomes)
      for (const CheckFinding& finding : outcome.findings) write(model, outcome, finding);
}

}  // namespace

void writeCheckGithub(std::span<const CheckedModel> models, std::ostream& out) {
  writeFindings(models,
                [&](const CheckedModel& model, const CheckOutcome& outcome, const CheckFinding& finding) {
                  const bool isNote = outcome.severity == CheckSeverity::info;
                  out << "::" << (isNote ? "notice" : checkSeverityName(outcome.severity))
                      << " file=" << escaped(model.input, kGithubProperty) << ",title=" << outcome.rule->id
                      << "::" << escaped(messageOf(model, finding), kGithubText) << '\n';
                });
}

/// There are no notes; these are lines of the log.
void writeCheckAzure(std::span<const CheckedModel> models, std::ostream& out) {
  writeFindings(models,
                [&](const CheckedModel& model, const CheckOutcome& outcome, const CheckFinding& finding) {
                  const std::string message = azureText(messageOf(model, finding), kAzureText);
                  if (outcome.severity == CheckSeverity::info) {
                    out << outcome.rule->id << ": " << message << '\n';
                    return;
                  }
                  out << "##vso[task.logissue type=" << checkSeverityName(outcome.severity)
                      << ";sourcepath=" << azureText(model.input, kAzureProperty)
                      << ";code=" << outcome.rule->id << "]" << message << '\n';
                });
}

}  // namespace tav

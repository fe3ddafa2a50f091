#include "checks/rules.h"

#include <re2/re2.h>

#include <algorithm>
#include <array>
#include <map>

#include "framework/details/details.h"
#include "framework/expression/layout.h"
#include "framework/std/mask.h"
#include "framework/std/text.h"
#include "lineage/coverage.h"
#include "lineage/gap_reason.h"
#include "lineage/unused.h"

namespace tav {
namespace {

using Findings = std::vector<CheckFinding>;

constexpr std::array<std::string_view, kCheckSeverityCount> kSeverities{"off", "info", "warning", "error"};

constexpr std::array kMeasures{NodeKind::measure, NodeKind::calculatedMeasure};
constexpr std::array kCalculated{NodeKind::calculatedMeasure};
constexpr std::array kNamed{NodeKind::dimension, NodeKind::attribute,         NodeKind::hierarchy,
                            NodeKind::measure,   NodeKind::calculatedMeasure, NodeKind::kpi,
                            NodeKind::cube,      NodeKind::perspective};
constexpr std::array kUsable{NodeKind::viewTable,        NodeKind::namedQuery, NodeKind::computedColumn,
                             NodeKind::sharedExpression, NodeKind::function,   NodeKind::namedSet,
                             NodeKind::calculatedMember};
constexpr std::array kRelationships{NodeKind::relationship};
constexpr std::array kKeys{NodeKind::attribute};
constexpr std::array kDescribed{NodeKind::measure, NodeKind::calculatedMeasure, NodeKind::dimension};

CheckFinding about(const LineageGraph& graph, NodeId id, std::string message) {
  return {graph.qualifiedName(id), graph.path(id), std::string(nodeKindLabel(graph.node(id).kind)),
          std::move(message)};
}

/// Under the name that the other rules give it, so that one exception holds for all.
CheckFinding about(const DiffObject& object, std::string message) {
  return {object.qualifiedName, object.path, std::string(nodeKindLabel(object.kind)), std::move(message)};
}

bool isAmong(std::span<const NodeKind> kinds, NodeKind kind) {
  return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

/// The nodes of the kinds that a rule is about, and what it says of those that it finds fault with.
template <class Judge>
Findings judgeNodes(const CheckSubject& subject, const CheckSettings& settings, Judge judge) {
  Findings findings;
  for (NodeId id = 0; id < subject.graph.nodes().size(); ++id) {
    if (!isAmong(settings.kinds, subject.graph.node(id).kind)) continue;
    if (std::string message = judge(id); !message.empty())
      findings.push_back(about(subject.graph, id, std::move(message)));
  }
  return findings;
}

Findings findLowCoverage(const CheckSubject& subject, const CheckSettings& settings) {
  const std::size_t percent = measureCoverage(subject.graph).percent();
  if (percent >= settings.floor) return {};
  return {{{},
           "/",
           "model",
           std::to_string(percent) +
               " % of the attributes and measures trace back to a database column, less than " +
               std::to_string(settings.floor) + " %"}};
}

Findings findUnresolved(const CheckSubject& subject, const CheckSettings& /*settings*/) {
  Findings findings;
  for (const CoverageName& name : measureCoverage(subject.graph).names)
    if (name.name.state == OpenNameState::mistake)
      findings.push_back(about(subject.graph, name.node, name.name.name + ": " + openNameWords(name.name)));
  return findings;
}

Findings findWhatNothingUses(const CheckSubject& subject, const CheckSettings& settings) {
  Findings findings;
  for (const UnusedGroup& group : unusedGroups()) {
    for (const UnusedNode& unused : findUnused(subject.graph, group))
      if (isAmong(settings.kinds, subject.graph.node(unused.node).kind))
        findings.push_back(about(subject.graph, unused.node, "nothing uses it"));
  }
  return findings;
}

bool hasSetting(const LineageGraph& graph, NodeId id, std::string_view name) {
  const auto settings = graph.rawSettings(id);
  return std::any_of(settings.begin(), settings.end(), [&](const DetailSetting* setting) {
    return foldedName(setting->name) == name && !setting->value.empty();
  });
}

Findings findUndescribed(const CheckSubject& subject, const CheckSettings& settings) {
  return judgeNodes(subject, settings, [&](NodeId id) {
    const bool hidden = subject.graph.isHidden(id);
    return hidden || !subject.graph.description(id).empty() ? std::string()
                                                            : std::string("it has no description");
  });
}

/// Scripts have names of their own for the settings of what they define.
bool hasFormat(const LineageGraph& graph, NodeId id) {
  if (hasSetting(graph, id, "formatstring") || hasSetting(graph, id, "format_string")) return true;
  const auto properties = graph.properties(id);
  if (std::any_of(properties.begin(), properties.end(), [](const auto& property) {
        return property.first == "formatString" && !property.second.empty();
      }))
    return true;
  const auto sources = graph.into(id);
  return std::any_of(sources.begin(), sources.end(),
                     [](const LineageEdge& edge) { return edge.kind == EdgeKind::formats; });
}

Findings findWithoutFormat(const CheckSubject& subject, const CheckSettings& settings) {
  return judgeNodes(subject, settings, [&](NodeId id) {
    return subject.graph.isHidden(id) || hasFormat(subject.graph, id) ? std::string()
                                                                      : std::string("it has no format");
  });
}

Findings findOtherNames(const CheckSubject& subject, const CheckSettings& settings) {
  if (!settings.regex) return {};
  return judgeNodes(subject, settings, [&](NodeId id) {
    const std::string name = subject.graph.name(id);
    return re2::RE2::PartialMatch(name, *settings.regex) ? std::string()
                                                         : "its name does not match " + settings.pattern;
  });
}

Findings findBlanksAround(const CheckSubject& subject, const CheckSettings& settings) {
  return judgeNodes(subject, settings, [&](NodeId id) {
    const std::string_view name = subject.graph.node(id).rawName;
    return trimmed(name).size() == name.size() ? std::string()
                                               : std::string("its name begins or ends with a blank");
  });
}

Findings findEqualExpressions(const CheckSubject& subject, const CheckSettings& settings) {
  std::map<std::string, NodeId> first;
  return judgeNodes(subject, settings, [&](NodeId id) {
    const std::string_view text = subject.graph.rawExpression(id);
    if (text.empty()) return std::string();
    const auto [found, isNew] = first.emplace(withoutLayout(text, subject.graph.language(id)), id);
    return isNew ? std::string() : "it is computed like " + subject.graph.qualifiedName(found->second);
  });
}

bool isInactive(const LineageGraph& graph, NodeId relationship) {
  const auto settings = graph.rawSettings(relationship);
  return std::any_of(settings.begin(), settings.end(), [](const DetailSetting* setting) {
    return setting->name == "isActive" && setting->value == "false";
  });
}

/// A relationship that no expression activates gives nothing to anyone.
Findings findInactive(const CheckSubject& subject, const CheckSettings& settings) {
  return judgeNodes(subject, settings, [&](NodeId id) {
    const bool idle = isInactive(subject.graph, id) && subject.graph.outOf(id).empty();
    return idle ? std::string("it is inactive, and no expression activates it") : std::string();
  });
}

/// Whether a column is the many side of a relationship, and nothing else uses it.
bool isOnlyKey(const LineageGraph& graph, NodeId id) {
  bool joins = false;
  for (const std::uint32_t place : graph.outOf(id)) {
    const LineageEdge& edge = graph.edges()[place];
    const NodeKind to = graph.node(edge.to).kind;
    if (isCopyKind(to) || rowOf(edge.kind).sense == RelationSense::shows) continue;
    if (to != NodeKind::relationship) return false;
    joins |= graph.edgeText(edge) == "from";
  }
  return joins;
}

Findings findVisibleKeys(const CheckSubject& subject, const CheckSettings& settings) {
  return judgeNodes(subject, settings, [&](NodeId id) {
    const bool seen = !subject.graph.isHidden(id) && isOnlyKey(subject.graph, id);
    return seen ? std::string("it only joins tables, and people see it") : std::string();
  });
}

Findings findPasswords(const CheckSubject& subject, const CheckSettings& /*settings*/) {
  Findings findings;
  for (const TAVStoreConnection& connection : subject.graph.model().storeConnections) {
    if (maskPasswords(connection.connectionString) != connection.connectionString.view())
      findings.push_back(
          {maskPasswords(connection.getName()), {}, "data source", "its connection string holds a password"});
  }
  return findings;
}

/// Keys and credentials are counted while reading, and kept in no form: nothing tells whose they were.
Findings findSecrets(const CheckSubject& subject, const CheckSettings& /*settings*/) {
  const Details* details = subject.graph.details();
  const std::size_t count = details ? details->passedOver(PassedOver::secrets) : 0;
  if (count == 0) return {};
  return {{{},
           "/",
           "model",
           "its definition holds " + std::to_string(count) +
               (count == 1 ? " password or key" : " passwords or keys") + " beside connection strings"}};
}

Findings findBroken(const CheckSubject& subject, const CheckSettings& /*settings*/) {
  Findings findings;
  for (const BrokenName& broken : subject.diff->broken)
    findings.push_back(about(broken.object, "nothing is called " + broken.name + " any longer" +
                                                (broken.note.empty() ? "" : "; nearest: " + broken.note)));
  return findings;
}

Findings findLostLineage(const CheckSubject& subject, const CheckSettings& /*settings*/) {
  Findings findings;
  for (const DiffObject& object : subject.diff->lostLineage)
    findings.push_back(about(object, "it traced back to a database column, and does no longer"));
  return findings;
}

/// What was used when it was there.
Findings findRemoved(const CheckSubject& subject, const CheckSettings& /*settings*/) {
  std::map<std::string, bool> used;
  const std::vector<bool> nodes = usedNodes(*subject.before);
  for (NodeId id = 0; id < nodes.size(); ++id)
    if (nodes[id]) used[subject.before->path(id)] = true;
  Findings findings;
  for (const DiffObject& object : subject.diff->removed)
    if (used.contains(object.path)) findings.push_back(about(object, "it is no longer there, and was used"));
  return findings;
}

constexpr std::array kRules{
    CheckRule{"coverage",
              "Enough of the model traces back to a database column",
              CheckSeverity::warning,
              false,
              80,
              {},
              false,
              findLowCoverage},
    CheckRule{"unresolved",
              "Every name in an expression is that of something",
              CheckSeverity::error,
              false,
              0,
              {},
              false,
              findUnresolved},
    CheckRule{"unused", "Everything is used by something", CheckSeverity::info, false, 0, kUsable, false,
              findWhatNothingUses},
    CheckRule{"description", "What people see has a description", CheckSeverity::off, false, 0, kDescribed,
              false, findUndescribed},
    CheckRule{"measure-format", "Measures that people see have a format", CheckSeverity::warning, false, 0,
              kMeasures, false, findWithoutFormat},
    CheckRule{"names", "Names match a pattern", CheckSeverity::off, false, 0, kNamed, true, findOtherNames},
    CheckRule{"blanks-around-names", "No name begins or ends with a blank", CheckSeverity::warning, false, 0,
              kNamed, false, findBlanksAround},
    CheckRule{"equal-expressions", "No two measures are computed in the same way", CheckSeverity::info, false,
              0, kCalculated, false, findEqualExpressions},
    CheckRule{"inactive-relationships", "Every inactive relationship is activated by some expression",
              CheckSeverity::info, false, 0, kRelationships, false, findInactive},
    CheckRule{"visible-keys", "Columns that only join tables are hidden", CheckSeverity::off, false, 0, kKeys,
              false, findVisibleKeys},
    CheckRule{"password",
              "No connection string holds a password",
              CheckSeverity::warning,
              false,
              0,
              {},
              false,
              findPasswords},
    CheckRule{"secrets",
              "No data source holds a password or key beside its connection string",
              CheckSeverity::warning,
              false,
              0,
              {},
              false,
              findSecrets},
    CheckRule{"broken",
              "No name lost what it meant (with --against)",
              CheckSeverity::error,
              true,
              0,
              {},
              false,
              findBroken},
    CheckRule{"lost-lineage",
              "Nothing lost its way to a database column (with --against)",
              CheckSeverity::error,
              true,
              0,
              {},
              false,
              findLostLineage},
    CheckRule{"removed",
              "Nothing is gone that was used (with --against)",
              CheckSeverity::warning,
              true,
              0,
              {},
              false,
              findRemoved},
};

}  // namespace

std::string_view checkSeverityName(CheckSeverity severity) noexcept {
  return kSeverities[static_cast<std::size_t>(severity)];
}

std::optional<CheckSeverity> checkSeverityOf(std::string_view name) noexcept {
  const auto found = std::find(kSeverities.begin(), kSeverities.end(), name);
  if (found == kSeverities.end()) return std::nullopt;
  return static_cast<CheckSeverity>(found - kSeverities.begin());
}

std::span<const CheckRule> checkRules() noexcept {
  return kRules;
}

}  // namespace tav

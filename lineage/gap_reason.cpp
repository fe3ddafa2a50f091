#include "lineage/gap_reason.h"

#include <algorithm>
#include <array>

#include "lineage/lost_columns.h"

namespace tav {
namespace {

/// The settings in which a dimension or measure group that is linked from elsewhere says from where, and what
/// each is to people.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kLinkSettings{{
    {"Source.DataSourceID", "data source"},
    {"Source.CubeID", "cube"},
    {"Source.DimensionID", "dimension"},
    {"Source.MeasureGroupID", "measure group"},
}};

std::string linkedFrom(const LineageGraph& graph, NodeId id) {
  const auto settings = graph.settings(id);
  std::string text;
  bool isElsewhere = false;
  for (const auto& [setting, word] : kLinkSettings) {
    const auto found = std::find_if(settings.begin(), settings.end(),
                                    [&name = setting](const auto& one) { return one.first == name; });
    if (found == settings.end()) continue;
    isElsewhere |= setting != kLinkSettings.front().first;
    text.append(text.empty() ? "" : ", ").append(word).append(" ").append(found->second);
  }
  return isElsewhere ? text : std::string();
}

/// Whether a dimension of dates has its members from its definition, which tells the first and the last.
bool isMadeByServer(const LineageGraph& graph, NodeId id) {
  const auto settings = graph.settings(id);
  return std::any_of(settings.begin(), settings.end(),
                     [](const auto& one) { return one.first == "Source.CalendarStartDate"; });
}

/// Of an attribute of a linked dimension, or a measure of a linked group, that nothing here feeds.
std::string linkedReason(const LineageGraph& graph, NodeId id) {
  const NodeId owner = graph.node(id).owner;
  const auto into = graph.into(id);
  const auto isSource = [](const LineageEdge& edge) { return edge.kind != EdgeKind::loads; };
  if (owner == kNoNode || std::any_of(into.begin(), into.end(), isSource)) return {};
  const std::string kind(nodeKindLabel(graph.node(owner).kind));
  if (isMadeByServer(graph, owner)) return "the server makes its " + kind + " from a calendar";
  const std::string from = linkedFrom(graph, owner);
  if (from.empty()) return {};
  return "its " + kind + " is linked from another database: " + from;
}

std::string namesReason(const std::vector<OpenNameText>& names, bool hasExpression) {
  std::string missing;
  std::string others;
  for (const OpenNameText& name : names) {
    std::string& list = name.state == OpenNameState::mistake ? missing : others;
    list.append(list.empty() ? "" : ", ").append(name.name);
    if (name.state == OpenNameState::mistake) {
      if (!name.note.empty()) list.append(" (the nearest is ").append(name.note).append(")");
    } else {
      list.append(" (").append(openNameWords(name)).append(")");
    }
  }
  std::string reason;
  if (!missing.empty() && hasExpression)
    reason = "its expression uses names that are not found: " + missing;
  else if (!missing.empty())
    reason = "it is bound to what the definition does not have: " + missing;
  if (!others.empty())
    reason.append(reason.empty() ? "its expression leads to no column: " : "; ").append(others);
  return reason;
}

bool hasValueSource(const LineageGraph& graph, NodeId id) {
  const auto into = graph.into(id);
  return std::any_of(into.begin(), into.end(), [](const LineageEdge& edge) { return givesValue(edge.kind); });
}

}  // namespace

std::string gapReason(const LineageGraph& graph, NodeId id) {
  id = graph.originalOf(id);
  if (std::string reason = linkedReason(graph, id); !reason.empty()) return reason;
  if (std::string reason = namesReason(graph.openNames(id), !graph.rawExpression(id).empty());
      !reason.empty())
    return reason;
  if (hasValueSource(graph, id)) return lostReason(graph, id);
  if (std::string reason = calculatedTableReason(graph, id); !reason.empty()) return reason;
  if (!graph.rawExpression(id).empty()) return "its expression uses no column, attribute or measure";
  if (graph.node(id).kind == NodeKind::kpiValue) return "the KPI has no expression for it";
  const NodeId owner = graph.node(id).owner;
  const bool hasTable = owner != kNoNode && !graph.into(owner).empty();
  if (graph.isTabular() || (graph.node(id).kind == NodeKind::attribute && !hasTable))
    return "it has no column";
  return graph.node(id).kind == NodeKind::cubeMeasure ? "the measure behind it is not in the model"
                                                      : "its column is not in the data source view";
}

std::string openNameWords(const OpenNameText& name) {
  switch (name.state) {
    case OpenNameState::exists:
      return name.note.empty() ? "exists, but is no attribute or measure" : "exists: " + name.note;
    case OpenNameState::beyond:
      return name.note.empty() ? "beyond this definition" : "beyond this definition: " + name.note;
    default:
      return name.note.empty() ? "not found" : "not found; the nearest is " + name.note;
  }
}

}  // namespace tav

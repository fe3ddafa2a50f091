#include "lineage/lineage_graph.h"

#include <algorithm>
#include <array>
#include <functional>

#include "framework/model/roles.h"
#include "framework/std/dotted_name.h"
#include "lineage/graph_builder.h"

namespace tav {
namespace {

struct KindRow {
  std::string_view name;
  std::string_view label;
  bool classifier;
};

constexpr std::array<KindRow, kNodeKindCount> kKinds{{
    {"databaseTable", "database table", true},
    {"databaseColumn", "database column", false},
    {"viewTable", "view table", true},
    {"namedQuery", "named query", true},
    {"viewColumn", "view column", false},
    {"computedColumn", "computed column", false},
    {"condition", "condition", false},
    {"dimension", "dimension", true},
    {"attribute", "attribute", false},
    {"measureGroup", "measure group", true},
    {"measure", "measure", false},
    {"linkedMeasureGroup", "linked measure group", true},
    {"linkedMeasure", "linked measure", false},
    {"calculations", "calculations", true},
    {"calculatedMeasure", "calculated measure", false},
    {"kpi", "KPI", true},
    {"kpiValue", "KPI value", false},
    {"cube", "cube", true},
    {"cubeDimension", "cube dimension", true},
    {"cubeAttribute", "cube attribute", false},
    {"cubeMeasure", "cube measure", false},
    {"perspective", "perspective", false},
}};

constexpr std::array<std::string_view, kEdgeKindCount> kEdgeKinds{"direct", "computed", "aggregated",
                                                                  "condition", "member"};

constexpr std::array<std::string_view, TAVAggregationOperatorType::kLast + 1> kAggregations{
    "Sum", "AverageOfChildren", "Count", "Minimum", "Maximum", "", "", "Other"};

const KindRow& row(NodeKind kind) noexcept {
  return kKinds[static_cast<std::size_t>(kind)];
}

template <class T>
std::span<const T> slice(const std::vector<T>& items, const std::vector<std::uint32_t>& offsets,
                         NodeId id) noexcept {
  return std::span(items).subspan(offsets[id], offsets[id + 1] - offsets[id]);
}

bool isDatabaseKind(NodeKind kind) noexcept {
  return kind == NodeKind::databaseTable || kind == NodeKind::databaseColumn;
}

bool isViewKind(NodeKind kind) noexcept {
  return kind >= NodeKind::viewTable && kind <= NodeKind::condition;
}

std::string_view operationOf(const TAVFeature& feature) {
  const TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
  return map ? map->operation.view() : std::string_view();
}

/// A query in M begins with `let`, or with a call of one of its functions, whose names have dots.
bool isM(std::string_view query) {
  const std::size_t begin = query.find_first_not_of(" \t\r\n");
  if (begin == query.npos) return false;
  query.remove_prefix(begin);
  const std::size_t word = query.find_first_of(" \t\r\n(");
  const std::string_view first = query.substr(0, word);
  return first == "let" || (word != query.npos && query[word] == '(' && first.find('.') != first.npos);
}

}  // namespace

std::string_view nodeKindName(NodeKind kind) noexcept {
  return row(kind).name;
}

std::string_view nodeKindLabel(NodeKind kind) noexcept {
  return row(kind).label;
}

bool isClassifierKind(NodeKind kind) noexcept {
  return row(kind).classifier;
}

bool isMeasureKind(NodeKind kind) noexcept {
  return kind == NodeKind::measure || kind == NodeKind::linkedMeasure ||
         kind == NodeKind::calculatedMeasure || kind == NodeKind::cubeMeasure;
}

bool isCopyKind(NodeKind kind) noexcept {
  switch (kind) {
    case NodeKind::cubeMeasure:
    case NodeKind::cubeAttribute:
    case NodeKind::cubeDimension:
    case NodeKind::linkedMeasure:
    case NodeKind::linkedMeasureGroup:
      return true;
    default:
      return false;
  }
}

std::string_view edgeKindName(EdgeKind kind) noexcept {
  return kEdgeKinds[static_cast<std::size_t>(kind)];
}

bool givesValue(EdgeKind kind) noexcept {
  return kind != EdgeKind::condition && kind != EdgeKind::member;
}

LineageGraph::LineageGraph(const TAVModel& model) : model_(model), tabular_(tav::isTabular(model)) {
  GraphBuilder(*this).build();
}

std::span<const LineageEdge> LineageGraph::into(NodeId id) const noexcept {
  return slice(edges_, inOffsets_, id);
}

std::span<const std::uint32_t> LineageGraph::outOf(NodeId id) const noexcept {
  return slice(out_, outOffsets_, id);
}

std::span<const NodeId> LineageGraph::partsOf(NodeId id) const noexcept {
  return slice(parts_, partOffsets_, id);
}

std::string LineageGraph::path(NodeId id) const {
  if (const TAVModelObject* object = node(id).object) return object->getPath(true).str();
  const NodeId table = node(id).kind == NodeKind::databaseTable ? id : node(id).owner;
  std::string text = database(id)->server + "/" + database(id)->database;
  if (table != kNoNode) {
    if (!schema(table).empty()) text.append("/").append(schema(table));
    text.append("/").append(node(table).name);
  }
  if (table != id) text.append("/").append(node(id).name);
  return text;
}

std::string LineageGraph::qualifiedName(NodeId id) const {
  const LineageNode& at = node(id);
  if (isDatabaseKind(at.kind) || isViewKind(at.kind)) return sqlName(id);
  std::string name = bracketed(at.name);
  if (isMeasureKind(at.kind)) return tabular_ ? name : "[Measures]." + name;
  if (at.kind == NodeKind::kpi) return "[KPIs]." + name;
  if (isClassifierKind(at.kind) || at.kind == NodeKind::perspective) return name;
  const std::string_view owner = node(at.owner).name;
  if (at.kind == NodeKind::kpiValue) return "[KPIs]." + bracketed(owner) + "." + name;
  return tabular_ ? quoted(owner) + name : bracketed(owner) + "." + name;
}

std::string LineageGraph::sqlName(NodeId id) const {
  const NodeId owner = node(id).owner;
  std::string text;
  const std::string_view schemaName = schema(owner == kNoNode ? id : owner);
  if (!schemaName.empty()) appendDottedPart(text, schemaName);
  if (owner != kNoNode) appendDottedPart(text, node(owner).name);
  appendDottedPart(text, node(id).name);
  return text;
}

std::string_view LineageGraph::expression(NodeId id) const {
  const TAVModelObject* object = node(id).object;
  if (const auto* table = as<TAVTable>(object)) return table->query;
  if (const auto* condition = as<TAVCondition>(object)) return condition->expression;
  if (const auto* column = as<TAVColumn>(object); column && !column->expression.empty())
    return column->expression;
  if (const auto* measure = as<TAVMeasure>(object); measure && !measure->expression.empty())
    return measure->expression;
  const auto* feature = as<TAVFeature>(object);
  return feature ? operationOf(*feature) : std::string_view();
}

std::string_view LineageGraph::language(NodeId id) const {
  const std::string_view text = expression(id);
  if (text.empty()) return {};
  if (isViewKind(node(id).kind)) return node(id).kind == NodeKind::namedQuery && isM(text) ? "m" : "sql";
  return tabular_ ? "dax" : "mdx";
}

std::string_view LineageGraph::aggregation(NodeId id) const {
  const LineageNode& at = node(id);
  const auto* measure = as<TAVMeasure>(at.object);
  if (!measure || at.kind != NodeKind::measure) return {};
  return kAggregations[static_cast<std::size_t>(measure->aggregation.value())];
}

std::vector<std::string_view> LineageGraph::unresolved(NodeId id) const {
  std::vector<std::string_view> names;
  if (!node(id).object) return names;
  for (const std::string_view name : unresolvedNamesOf(*node(id).object))
    if (!std::binary_search(resolvedNames_.begin(), resolvedNames_.end(), name.data(), std::less<>()))
      names.push_back(name);
  return names;
}

NodeId LineageGraph::cubeOf(NodeId id) const noexcept {
  while (id != kNoNode && node(id).kind != NodeKind::cube) id = node(id).owner;
  return id;
}

const DatabaseAddress* LineageGraph::database(NodeId id) const noexcept {
  return id < firstDatabaseNode_ ? nullptr : &addresses_[places_[id - firstDatabaseNode_].address];
}

std::string_view LineageGraph::schema(NodeId id) const noexcept {
  return id < firstDatabaseNode_ ? std::string_view() : places_[id - firstDatabaseNode_].schema;
}

std::vector<bool> LineageGraph::reachingColumns(bool withFound) const {
  std::vector<bool> reached(nodes_.size());
  std::vector<NodeId> waiting;
  const auto add = [&](NodeId id) {
    if (reached[id]) return;
    reached[id] = true;
    waiting.push_back(id);
  };
  for (NodeId id = firstDatabaseNode_; id < nodes_.size(); ++id)
    if (nodes_[id].kind == NodeKind::databaseColumn) add(id);
  while (!waiting.empty()) {
    const NodeId source = waiting.back();
    waiting.pop_back();
    for (const std::uint32_t place : outOf(source)) {
      const LineageEdge& edge = edges_[place];
      if (givesValue(edge.kind) && (withFound || !edge.foundByGraph)) add(edge.to);
    }
  }
  return reached;
}

}  // namespace tav

#include "framework/details/kinds.h"

#include <algorithm>
#include <unordered_map>

namespace tav {
namespace {

constexpr bool kParts = true;
constexpr bool kCopy = true;
constexpr bool kUnordered = false;

// In the order of ObjectKind.
constexpr std::array<ObjectKindRow, kObjectKindCount> kObjectKinds{{
    {"databaseTable", "database table", "database tables", kParts},
    {"databaseColumn", "database column", "database columns"},
    {"viewTable", "view table", "view tables", kParts},
    {"namedQuery", "named query", "named queries", kParts},
    {"viewColumn", "view column", "view columns"},
    {"computedColumn", "computed column", "computed columns"},
    {"condition", "condition", "conditions"},
    {"dimension", "dimension", "dimensions", kParts},
    {"attribute", "attribute", "attributes"},
    {"measureGroup", "measure group", "measure groups", kParts},
    {"measure", "measure", "measures"},
    {"linkedMeasureGroup", "linked measure group", "linked measure groups", kParts, kCopy},
    {"linkedMeasure", "linked measure", "linked measures", false, kCopy},
    {"calculations", "calculations", "calculations", kParts},
    {"calculatedMeasure", "calculated measure", "calculated measures"},
    {"kpi", "KPI", "KPIs", kParts},
    {"kpiValue", "KPI value", "KPI values"},
    {"cube", "cube", "cubes", kParts},
    {"cubeDimension", "cube dimension", "cube dimensions", kParts, kCopy},
    {"cubeAttribute", "cube attribute", "cube attributes", false, kCopy},
    {"cubeMeasure", "cube measure", "cube measures", false, kCopy},
    {"perspective", "perspective", "perspectives", false, false, kUnordered},
    {"database", "database", "databases"},
    {"dataSource", "data source", "data sources", false, false, kUnordered},
    {"dataSourceView", "data source view", "data source views", false, false, kUnordered},
    {"hierarchy", "hierarchy", "hierarchies"},
    {"level", "level", "levels"},
    {"relationship", "relationship", "relationships", false, false, kUnordered},
    {"cubeHierarchy", "cube hierarchy", "cube hierarchies", false, kCopy},
    {"dimensionUsage", "dimension usage", "dimension usages"},
    {"partition", "partition", "partitions", false, false, kUnordered},
    {"refreshPolicy", "refresh policy", "refresh policies", false, false, kUnordered},
    {"aggregationDesign", "aggregation design", "aggregation designs", false, false, kUnordered},
    {"script", "MDX script", "MDX scripts"},
    {"everyMeasure", "measures", "measures"},
    {"everyPartition", "partitions", "partitions"},
    {"namedSet", "named set", "named sets"},
    {"calculatedMember", "calculated member", "calculated members"},
    {"calculatedCells", "calculated cells", "calculated cells"},
    {"scope", "scope", "scopes"},
    {"assignment", "assignment", "assignments"},
    {"scriptStatement", "script statement", "script statements"},
    {"action", "action", "actions"},
    {"role", "role", "roles", false, false, kUnordered},
    {"permission", "permission", "permissions", false, false, kUnordered},
    {"miningStructure", "mining structure", "mining structures", false, false, kUnordered},
    {"miningColumn", "mining column", "mining columns"},
    {"miningModel", "mining model", "mining models", false, false, kUnordered},
    {"assembly", "assembly", "assemblies", false, false, kUnordered},
    {"accountType", "account type", "account types", false, false, kUnordered},
    {"calculationItem", "calculation item", "calculation items"},
    {"sharedExpression", "expression", "expressions", false, false, kUnordered},
    {"function", "function", "functions", false, false, kUnordered},
    {"culture", "culture", "cultures", false, false, kUnordered},
    {"calendar", "calendar", "calendars", false, false, kUnordered},
    {"report", "report", "reports", false, false, kUnordered},
    {"reportPage", "report page", "report pages"},
    {"visual", "visual", "visuals", false, false, kUnordered},
    {"bookmark", "bookmark", "bookmarks", false, false, kUnordered},
    {"reportMeasure", "report measure", "report measures", false, false, kUnordered},
    {"reportDataSet", "data set", "data sets", false, false, kUnordered},
    {"other", "element", "elements"},
}};

// In the order of RelationKind.
constexpr std::array<RelationKindRow, kRelationKindCount> kRelationKinds{{
    {"direct", "", "", RelationSense::gives},
    {"computed", "uses", "used by", RelationSense::gives},
    {"aggregated", "aggregates", "aggregated by", RelationSense::gives},
    {"condition", "limited by", "limits", RelationSense::narrows},
    {"member", "shows", "shown by", RelationSense::shows},
    {"counted", "counts the rows of", "rows counted by", RelationSense::gives},
    {"reads", "reads", "read by", RelationSense::gives},
    {"fills", "filled by", "fills", RelationSense::gives},
    {"assigns", "assigned by", "assigns", RelationSense::gives},
    {"applied", "changed by", "applied to", RelationSense::gives},
    {"key", "keyed by", "key of", RelationSense::identifies},
    {"name", "named by", "name of", RelationSense::identifies},
    {"value", "takes its value from", "value of", RelationSense::identifies},
    {"caption", "captioned by", "caption of", RelationSense::identifies},
    {"order", "ordered by", "orders", RelationSense::identifies},
    {"group", "grouped by", "groups", RelationSense::identifies},
    {"unaryOperator", "takes its operator from", "unary operator of", RelationSense::identifies},
    {"rollup", "rolled up by", "custom roll-up of", RelationSense::identifies},
    {"skippedLevels", "skips levels by", "skipped levels of", RelationSense::identifies},
    {"related", "has the related attribute", "related attribute of", RelationSense::identifies},
    {"basis", "based on", "basis of", RelationSense::identifies},
    {"parent", "child of", "parent of", RelationSense::identifies},
    {"associated", "associated with", "associated with", RelationSense::other},
    {"uses", "joined to", "joined in", RelationSense::joins},
    {"granularity", "at the granularity of", "granularity of", RelationSense::joins},
    {"intermediate", "through", "intermediate of", RelationSense::joins},
    {"bridge", "bridged by", "bridges", RelationSense::joins},
    {"relates", "related by", "relates", RelationSense::joins},
    {"joins", "joins", "joined by", RelationSense::joins},
    {"follows", "follows", "followed by", RelationSense::joins},
    {"filters", "filtered by", "filters", RelationSense::narrows},
    {"secures", "secures", "secured by", RelationSense::secures},
    {"belongs", "permits", "permission of", RelationSense::secures},
    {"formats", "formatted by", "formats", RelationSense::formats},
    {"colours", "coloured by", "colours", RelationSense::formats},
    {"nonEmpty", "non-empty by", "non-empty behaviour of", RelationSense::formats},
    {"tooltip", "tooltip from", "tooltip of", RelationSense::formats},
    {"detailRows", "detail rows from", "detail rows of", RelationSense::formats},
    {"weighs", "weighted by", "weight of", RelationSense::other},
    {"offered", "offered on", "has the action", RelationSense::other},
    {"drills", "drills through to", "drilled through to by", RelationSense::other},
    {"mines", "mines", "mined by", RelationSense::other},
    {"connects", "connects through", "data source of", RelationSense::other},
    {"refreshes", "refreshed by", "refreshes", RelationSense::other},
    {"displays", "displays", "displayed by", RelationSense::other},
    {"loads", "filled by", "fills", RelationSense::other},
    {"replaced", "replaces", "replaced in", RelationSense::other},
    {"mentions", "mentions", "mentioned by", RelationSense::other},
}};

template <class Rows> std::unordered_map<std::string_view, std::size_t> indexOf(const Rows& rows) {
  std::unordered_map<std::string_view, std::size_t> index;
  for (std::size_t i = 0; i < rows.size(); ++i) index.emplace(rows[i].name, i);
  return index;
}

}  // namespace

const ObjectKindRow& rowOf(ObjectKind kind) noexcept {
  return kObjectKinds[static_cast<std::size_t>(kind)];
}

std::optional<ObjectKind> objectKindOf(std::string_view name) {
  static const auto index = indexOf(kObjectKinds);
  const auto found = index.find(name);
  return found == index.end() ? std::nullopt : std::optional(static_cast<ObjectKind>(found->second));
}

const RelationKindRow& rowOf(RelationKind kind) noexcept {
  return kRelationKinds[static_cast<std::size_t>(kind)];
}

std::optional<RelationKind> relationKindOf(std::string_view name) {
  static const auto index = indexOf(kRelationKinds);
  const auto found = index.find(name);
  return found == index.end() ? std::nullopt : std::optional(static_cast<RelationKind>(found->second));
}

bool givesValue(RelationKind kind) noexcept {
  return rowOf(kind).sense == RelationSense::gives;
}

}  // namespace tav

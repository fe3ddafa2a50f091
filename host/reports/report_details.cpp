#include "host/reports/report_details.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "framework/std/string.h"
#include "host/reports/dax_names.h"
#include "host/reports/mdx_names.h"
#include "host/reports/paginated_report.h"
#include "host/reports/report_reader.h"
#include "lineage/lineage_graph.h"
#include "lineage/node_search.h"

namespace host {
namespace {

using tav::ItemId;
using tav::NodeId;
using tav::ObjectKind;
using tav::RelationKind;

std::string keyOf(std::string_view table, std::string_view name) {
  return tav::foldCase(table) + '\n' + tav::foldCase(name);
}

/// As DAX writes it.
std::string written(std::string_view table, std::string_view name) {
  std::string text = table.empty() ? std::string() : "'" + std::string(table) + "'";
  if (!name.empty()) text.append("[").append(name).append("]");
  return text;
}

/// What reports can name, by its names.
class FieldIndex {
 public:
  explicit FieldIndex(const tav::LineageGraph& graph) : graph_(graph) {
    for (NodeId id = 0; id < graph.nodes().size(); ++id) add(id);
  }

  [[nodiscard]] NodeId table(std::string_view name) const { return find(tables_, tav::foldCase(name)); }
  [[nodiscard]] NodeId column(std::string_view table, std::string_view name) const {
    return find(columns_, keyOf(table, name));
  }
  [[nodiscard]] NodeId hierarchy(std::string_view table, std::string_view name) const {
    return find(hierarchies_, keyOf(table, name));
  }
  [[nodiscard]] NodeId level(NodeId hierarchy, std::string_view name) const {
    return find(levels_, keyOf(std::to_string(hierarchy), name));
  }
  /// What [table].[name].[level] is in MDX: a level, a hierarchy, or an attribute, which has levels of its
  /// own.
  [[nodiscard]] NodeId mdx(std::string_view table, std::string_view name, std::string_view level) const {
    const NodeId found = hierarchy(table, name);
    if (found == tav::kNoNode) return column(table, name);
    const NodeId inner = this->level(found, level);
    return inner == tav::kNoNode ? found : inner;
  }
  /// Measures have names of their own in a model, whatever table lists them.
  [[nodiscard]] NodeId measure(std::string_view name) const { return find(measures_, tav::foldCase(name)); }

  /// The nearest spelling of a name that nothing has; empty when there is none. What many names ask for is
  /// looked for as often as that is quick.
  std::string nearest(std::string_view table, std::string_view name) {
    constexpr std::size_t kMostSearches = 100;
    if (++searches_ > kMostSearches) return {};
    for (const tav::NearNode& near : tav::nearestNodes(graph_, written(table, name), tav::kNearest))
      if (isField(graph_.node(near.node).kind)) return graph_.rawQualifiedName(near.node);
    return {};
  }

 private:
  using Names = std::unordered_map<std::string, NodeId>;

  static bool isField(ObjectKind kind) {
    return kind == ObjectKind::attribute || kind == ObjectKind::measure ||
           kind == ObjectKind::calculatedMeasure || kind == ObjectKind::hierarchy ||
           kind == ObjectKind::level;
  }

  static NodeId find(const Names& names, const std::string& key) {
    const auto found = names.find(key);
    return found == names.end() ? tav::kNoNode : found->second;
  }

  [[nodiscard]] std::string_view nameOf(NodeId id) const {
    return id == tav::kNoNode ? std::string_view() : graph_.node(id).rawName;
  }

  void add(NodeId id) {
    const tav::LineageNode& node = graph_.node(id);
    switch (node.kind) {
      case ObjectKind::dimension:
        tables_.emplace(tav::foldCase(node.rawName), id);
        break;
      case ObjectKind::attribute:
      case ObjectKind::cubeAttribute:
        columns_.emplace(keyOf(nameOf(node.owner), node.rawName), id);
        break;
      case ObjectKind::hierarchy:
      case ObjectKind::cubeHierarchy:
        hierarchies_.emplace(keyOf(nameOf(node.owner), node.rawName), id);
        break;
      case ObjectKind::level:
        levels_.emplace(keyOf(std::to_string(node.owner), node.rawName), id);
        break;
      case ObjectKind::measure:
      case ObjectKind::calculatedMeasure:
        measures_.emplace(tav::foldCase(node.rawName), id);
        break;
      case ObjectKind::kpiValue:
        // A field of its own: "_Margin Status".
        measures_.emplace(
            tav::foldCase("_" + std::string(nameOf(node.owner)) + " " + std::string(node.rawName)), id);
        break;
      default:
        break;
    }
  }

  const tav::LineageGraph& graph_;
  Names tables_;
  Names columns_;
  Names hierarchies_;
  Names levels_;
  Names measures_;
  std::size_t searches_ = 0;
};

class ReportImport {
 public:
  ReportImport(const TAVModel& model, tav::Details& details)
      : details_(details), model_(model), graph_({model, &details}), index_(graph_) {}

  void add(const std::vector<ReportPart>& parts) {
    for (const ReportPart& part : parts) addItem(part);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      relateFields(parts[i], items_[i]);
      if (parts[i].language == "dax") relateNames(parts[i], items_[i]);
      if (parts[i].language == "mdx") relateMdxNames(parts[i], items_[i]);
    }
  }

 private:
  /// Pictures and texts, and bookmarks of nothing but a page, show nothing of the model.
  static bool isIdle(const ReportPart& part) {
    return part.uses.empty() && (part.kind == ObjectKind::visual || part.kind == ObjectKind::bookmark);
  }

  void addItem(const ReportPart& part) {
    if (isIdle(part)) return items_.push_back(tav::kNoItem);
    const ItemId owner = part.owner == ReportPart::kNone ? details_.itemOf(model_) : items_[part.owner];
    const ItemId item = details_.add(part.kind, owner, part.name, part.text, part.language);
    if (!part.id.empty() && part.id != part.name) details_.set(item, "name", part.id);
    if (!part.type.empty()) details_.set(item, "visualType", part.type);
    if (!part.table.empty()) details_.set(item, "table", part.table);
    if (part.kind == ObjectKind::reportMeasure) measures_.emplace(tav::foldCase(part.name), item);
    items_.push_back(item);
  }

  void relateFields(const ReportPart& part, ItemId item) {
    std::unordered_set<std::string> shown;
    std::unordered_set<std::string> missing;
    for (const FieldUse& use : part.uses) {
      const std::string key = keyOf(use.table, use.name) + '\n' + use.level;
      // What is shown is offered as a filter anyway.
      if (use.filters && use.offered && shown.contains(key)) continue;
      if (!use.filters) shown.insert(key);
      if (const ItemId field = fieldOf(use); field != tav::kNoItem)
        details_.relate(use.filters ? RelationKind::filters : RelationKind::displays, field, item);
      else if (missing.insert(key).second)
        lose(item, use.table, use.level.empty() ? use.name : use.name + "." + use.level);
    }
  }

  ItemId fieldOf(const FieldUse& use) {
    if (use.kind == FieldUse::Kind::hierarchy) {
      const NodeId hierarchy = index_.hierarchy(use.table, use.name);
      if (hierarchy == tav::kNoNode || use.level.empty()) return itemOf(hierarchy);
      return itemOf(index_.level(hierarchy, use.level));
    }
    if (use.kind == FieldUse::Kind::column) return itemOf(index_.column(use.table, use.name));
    const auto own = measures_.find(tav::foldCase(use.name));
    if (own != measures_.end()) return own->second;
    return use.ofReport ? tav::kNoItem : itemOf(index_.measure(use.name));
  }

  /// What a query in MDX asks for.
  void relateMdxNames(const ReportPart& part, ItemId item) {
    std::unordered_set<std::string> met;
    for (const std::vector<std::string>& parts : mdxNames(part.text)) {
      const bool isMeasure = tav::foldCase(parts[0]) == "measures";
      const std::string_view level = parts.size() > 2 && !isMeasure ? parts[2] : std::string_view();
      if (!met.insert(keyOf(parts[0], parts[1]) + '\n' + tav::foldCase(level)).second) continue;
      const NodeId node = isMeasure ? index_.measure(parts[1]) : index_.mdx(parts[0], parts[1], level);
      if (node != tav::kNoNode)
        details_.relate(RelationKind::computed, itemOf(node), item);
      else
        details_.addOpenName(item, "[" + parts[0] + "].[" + parts[1] + "]", tav::OpenNameState::mistake,
                             index_.nearest(parts[0], parts[1]));
    }
  }

  /// What a measure of the report computes with, or a query in DAX asks for.
  void relateNames(const ReportPart& part, ItemId item) {
    std::unordered_set<std::string> missing;
    for (const DaxName& name : daxNames(part.text)) {
      if (const ItemId named = namedBy(name, part.table); named != tav::kNoItem)
        details_.relate(RelationKind::computed, named, item);
      else if (name.quoted && missing.insert(keyOf(name.table, name.name)).second)
        lose(item, name.table, name.name);
    }
  }

  ItemId namedBy(const DaxName& name, std::string_view table) {
    if (name.name.empty()) return itemOf(index_.table(name.table));
    if (const auto own = measures_.find(tav::foldCase(name.name)); own != measures_.end()) return own->second;
    const NodeId column = index_.column(name.table.empty() ? table : name.table, name.name);
    return itemOf(column == tav::kNoNode ? index_.measure(name.name) : column);
  }

  ItemId itemOf(NodeId id) {
    if (id == tav::kNoNode) return tav::kNoItem;
    const tav::LineageNode& node = graph_.node(id);
    return node.object ? details_.itemOf(*node.object) : node.item;
  }

  void lose(ItemId item, std::string_view table, std::string_view name) {
    details_.addOpenName(item, written(table, name), tav::OpenNameState::mistake,
                         index_.nearest(table, name));
  }

  tav::Details& details_;
  const TAVModel& model_;
  tav::LineageGraph graph_;
  FieldIndex index_;
  std::vector<ItemId> items_;                         // by part
  std::unordered_map<std::string, ItemId> measures_;  // of the report, by name
};

}  // namespace

void addReport(const ReportPlace& report, const TAVModel& model, tav::Details& details, MessageLog& log) {
  ReportImport(model, details)
      .add(report.isPaginated ? readPaginatedReport(report, log) : readReport(report, log));
}

}  // namespace host

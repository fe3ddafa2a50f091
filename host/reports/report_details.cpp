#include "host/reports/report_details.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/std/empty_table.h"
#include "framework/std/exception.h"
#include "framework/std/string.h"
#include "host/reports/dax_queries.h"
#include "host/reports/mdx_names.h"
#include "host/reports/paginated_report.h"
#include "host/reports/report_reader.h"
#include "lineage/lineage_graph.h"
#include "lineage/node_search.h"
#include "messages/message.h"

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

  /// A function of the model.
  [[nodiscard]] NodeId function(std::string_view name) const { return find(functions_, tav::foldCase(name)); }

  /// Tells DAX of all of it, and gives the nodes in the order in which it was told.
  std::vector<NodeId> tell(DaxQueries& dax) const {
    std::vector<NodeId> told;
    for (const auto& [key, table] : tables_) {
      dax.addTable(table.name);
      told.push_back(table.node);
      for (const NodeId column : table.columns) {
        dax.addColumn(graph_.node(column).rawName);
        told.push_back(column);
      }
    }
    for (const auto& [name, measure] : measures_) {
      dax.addMeasure(name);
      told.push_back(measure);
    }
    for (const auto& [name, function] : functions_) dax.addFunction(name, graph_.rawExpression(function));
    return told;
  }

  /// The nearest spelling of a name that nothing has, as DAX writes it; empty when there is none. What many
  /// names ask for is looked for as often as that is quick.
  std::string nearest(const std::string& name) {
    constexpr std::size_t kMostSearches = 100;
    if (++searches_ > kMostSearches) return {};
    for (const tav::NearNode& near : tav::nearestNodes(graph_, name, tav::kNearest))
      if (isField(graph_.node(near.node).kind)) return graph_.rawQualifiedName(near.node);
    return {};
  }

 private:
  using Names = std::unordered_map<std::string, NodeId>;

  struct Table {
    std::string name;
    NodeId node = tav::kNoNode;  ///< none for the name that a cube gives a dimension
    std::vector<NodeId> columns;
  };

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
      case ObjectKind::measureGroup:
        if (Table& table = tableCalled(node.rawName); table.node == tav::kNoNode) table.node = id;
        break;
      case ObjectKind::attribute:
      case ObjectKind::cubeAttribute:
        if (columns_.emplace(keyOf(nameOf(node.owner), node.rawName), id).second)
          tableCalled(nameOf(node.owner)).columns.push_back(id);
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
      case ObjectKind::function:
        functions_.emplace(tav::foldCase(node.rawName), id);
        break;
      default:
        break;
    }
  }

  Table& tableCalled(std::string_view name) {
    return tables_.try_emplace(tav::foldCase(name), Table{std::string(name), tav::kNoNode, {}}).first->second;
  }

  const tav::LineageGraph& graph_;
  std::unordered_map<std::string, Table> tables_;
  Names functions_;
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
    items_.clear();
    tav::emptyTable(measures_);
    for (const ReportPart& part : parts) addItem(part);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      relateFields(parts[i], items_[i]);
      if (parts[i].language == "mdx") relateMdxNames(parts[i], items_[i]);
    }
    addDax(parts);
  }

  /// Relates what DAX names, in all reports. Throws a TAVException when Java cannot be run.
  void finish() {
    if (dax_.empty()) return;
    const std::vector<std::vector<DaxUse>> named = dax_.read();
    for (std::size_t i = 0; i < named.size(); ++i)
      for (const DaxUse& use : named[i]) relateDax(use, daxItems_[i]);
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
                             index_.nearest(written(parts[0], parts[1])));
    }
  }

  void addDax(const std::vector<ReportPart>& parts) {
    const auto isDax = [](const ReportPart& part) { return part.language == "dax"; };
    if (std::none_of(parts.begin(), parts.end(), isDax)) return;
    if (dax_.empty())
      for (const NodeId node : index_.tell(dax_)) daxObjects_.push_back({node, tav::kNoItem});
    dax_.startReport();
    for (const auto& [name, item] : measures_) {
      dax_.addOwnMeasure(name);
      daxObjects_.push_back({tav::kNoNode, item});
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (!isDax(parts[i])) continue;
      dax_.add(parts[i].table, parts[i].text);
      daxItems_.push_back(items_[i]);
    }
  }

  void relateDax(const DaxUse& use, ItemId item) {
    switch (use.kind) {
      case DaxUse::Kind::uses:
        return relateObject(use.object, RelationKind::computed, item);
      case DaxUse::Kind::counts:
        return relateObject(use.object, RelationKind::counted, item);
      case DaxUse::Kind::takes:
        return relateObject(use.object, RelationKind::condition, item);
      case DaxUse::Kind::calls:
        if (const ItemId function = itemOf(index_.function(use.name)); function != tav::kNoItem)
          details_.relate(RelationKind::computed, function, item);
        return;
      case DaxUse::Kind::lacks:
        return details_.addOpenName(item, use.name, tav::OpenNameState::mistake, index_.nearest(use.name));
    }
  }

  void relateObject(std::size_t place, RelationKind kind, ItemId item) {
    if (place >= daxObjects_.size()) return;
    const DaxObject& object = daxObjects_[place];
    const ItemId named = object.item == tav::kNoItem ? itemOf(object.node) : object.item;
    if (named != tav::kNoItem) details_.relate(kind, named, item);
  }

  ItemId itemOf(NodeId id) {
    if (id == tav::kNoNode) return tav::kNoItem;
    const tav::LineageNode& node = graph_.node(id);
    return node.object ? details_.itemOf(*node.object) : node.item;
  }

  void lose(ItemId item, std::string_view table, std::string_view field) {
    const std::string name = written(table, field);
    details_.addOpenName(item, name, tav::OpenNameState::mistake, index_.nearest(name));
  }

  tav::Details& details_;
  const TAVModel& model_;
  tav::LineageGraph graph_;
  FieldIndex index_;
  // Of the report that is being added.
  std::vector<ItemId> items_;                         // by part
  std::unordered_map<std::string, ItemId> measures_;  // its own, by name

  /// What DAX can name: an object of the model, or a measure of a report.
  struct DaxObject {
    NodeId node;
    ItemId item;
  };
  DaxQueries dax_;
  std::vector<DaxObject> daxObjects_;  // by their places there
  std::vector<ItemId> daxItems_;       // by query
};

}  // namespace

void addReports(const std::vector<ReportPlace>& reports, const TAVModel& model, tav::Details& details,
                MessageLog& log) {
  if (reports.empty()) return;
  ReportImport import(model, details);
  for (const ReportPlace& report : reports)
    import.add(report.isPaginated ? readPaginatedReport(report, log) : readReport(report, log));
  try {
    import.finish();
  } catch (const TAVException& error) {
    log.logEvent(tav::messageEvent(tav::Message::daxNotRead, {error.getMessage().view()}));
  }
}

}  // namespace host

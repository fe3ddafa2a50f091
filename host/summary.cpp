#include "host/summary.h"
#include "host/standard_output.h"

#include <fmt/ostream.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "framework/model/roles.h"
#include "host/message_log.h"
#include "lineage/lineage_graph.h"

namespace host {
namespace {

bool isIn(const tav::LineageGraph& graph, tav::NodeId id, tav::NodeKind owner) {
  const tav::NodeId place = graph.node(id).owner;
  return place != tav::kNoNode && graph.node(place).kind == owner;
}

/// Counts nodes by kind, and of those that have values how many trace back.
class Counter {
 public:
  Counter(const tav::LineageGraph& graph, Summary& summary)
      : graph_(graph), reached_(graph.tracedBack()), summary_(summary) {}

  void count(tav::NodeId id) {
    switch (graph_.node(id).kind) {
      case tav::NodeKind::viewTable:
      case tav::NodeKind::namedQuery:
        ++summary_.tables;
        break;
      case tav::NodeKind::viewColumn:
      case tav::NodeKind::computedColumn:
        ++summary_.columns;
        break;
      case tav::NodeKind::dimension:
        ++summary_.dimensions;
        break;
      case tav::NodeKind::cube:
        ++summary_.cubes;
        break;
      case tav::NodeKind::perspective:
        ++summary_.perspectives;
        break;
      case tav::NodeKind::kpi:
        ++summary_.kpis;
        break;
      default:
        countValue(id);
    }
  }

 private:
  void countValue(tav::NodeId id) {
    switch (graph_.node(id).kind) {
      case tav::NodeKind::attribute:
        countReach(id, summary_.attributes);
        break;
      case tav::NodeKind::measure:
        if (!isIn(graph_, id, tav::NodeKind::measureGroup)) return;
        countReach(id, summary_.measures);
        summary_.rowCounts += graph_.countsRows(id);
        break;
      case tav::NodeKind::calculatedMeasure:
        countReach(id, summary_.calculatedMeasures);
        summary_.calculatedRowCounts += graph_.countsRows(id);
        break;
      default:
        break;
    }
    const TAVModelObject* object = graph_.node(id).object;
    summary_.openExpressions += object && !tav::unresolvedNamesOf(*object).empty();
  }

  void countReach(tav::NodeId id, Summary::Reach& kind) const {
    if (!graph_.node(id).object) return;  // only named, as one of another database
    ++kind.count;
    kind.reached += reached_[id];
  }

  const tav::LineageGraph& graph_;
  std::vector<bool> reached_;
  Summary& summary_;
};

void writeCount(std::ostream& out, std::string_view label, std::size_t count, const std::string& more = {}) {
  fmt::print(out, "  {:<22}{:>9}{}{}\n", label, count, more.empty() ? "" : "   ", more);
}

std::string reachText(const Summary::Reach& kind) {
  if (kind.count == 0) return "";
  const std::size_t percent = kind.reached * 100 / kind.count;  // rounded down: 100 % means all
  return fmt::format("{} ({} %) trace back to a database column", kind.reached, percent);
}

}  // namespace

Summary summarize(const tav::DetailedModel& model) {
  const tav::LineageGraph graph(model);
  Summary summary;
  summary.database = graph.modelName();
  summary.dataSources = model.model.storeConnections.getCount();
  Counter counter(graph, summary);
  for (tav::NodeId id = 0; id < graph.nodes().size(); ++id) counter.count(id);
  return summary;
}

void writeSummary(const Summary& summary, std::size_t unresolved, std::ostream& out) {
  fmt::print(out, "Database {}\n", printable(summary.database));
  writeCount(out, "Data sources", summary.dataSources);
  writeCount(out, "Tables", summary.tables);
  writeCount(out, "Columns", summary.columns);
  writeCount(out, "Dimensions", summary.dimensions);
  writeCount(out, "Attributes", summary.attributes.count, reachText(summary.attributes));
  writeCount(out, "Cubes", summary.cubes);
  writeCount(out, "Perspectives", summary.perspectives);
  const auto withRowCounts = [](std::string text, std::size_t count) {
    if (count > 0) text += fmt::format(", {} row count{}", count, count == 1 ? "" : "s");
    return text;
  };
  writeCount(out, "Measures", summary.measures.count,
             withRowCounts(reachText(summary.measures), summary.rowCounts));
  writeCount(out, "Calculated measures", summary.calculatedMeasures.count,
             withRowCounts(reachText(summary.calculatedMeasures), summary.calculatedRowCounts));
  writeCount(out, "KPIs", summary.kpis);
  writeCount(out, "Unresolved references", unresolved,
             unresolved == 0 ? ""
                             : fmt::format("in {} expression{}", summary.openExpressions,
                                           summary.openExpressions == 1 ? "" : "s"));
}

std::string summaryAsJson(const Summary& summary, std::size_t unresolved, const std::string& output) {
  const auto reach = [](const Summary::Reach& kind) {
    return nlohmann::ordered_json{{"count", kind.count}, {"withLineage", kind.reached}};
  };
  const nlohmann::ordered_json document{{"database", summary.database},
                                        {"dataSources", summary.dataSources},
                                        {"tables", summary.tables},
                                        {"columns", summary.columns},
                                        {"dimensions", summary.dimensions},
                                        {"attributes", reach(summary.attributes)},
                                        {"cubes", summary.cubes},
                                        {"perspectives", summary.perspectives},
                                        {"measures", reach(summary.measures)},
                                        {"rowCounts", summary.rowCounts + summary.calculatedRowCounts},
                                        {"calculatedMeasures", reach(summary.calculatedMeasures)},
                                        {"kpis", summary.kpis},
                                        {"unresolvedReferences", unresolved},
                                        {"openExpressions", summary.openExpressions},
                                        {"output", output}};
  return document.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void tellSummary(const Summary& summary, const std::string& output, bool json, const MessageLog& log) {
  if (log.quiet && !json) return;
  StandardOutput out;
  if (json) {
    out.stream() << summaryAsJson(summary, log.getUnresolvedCount(), output) << '\n';
  } else {
    writeSummary(summary, log.getUnresolvedCount(), out.stream());
    fmt::print(out.stream(), "Saved in {}\n", printable(output));
  }
  out.finish();
}

}  // namespace host

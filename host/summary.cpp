#include "host/summary.h"

#include <fmt/ostream.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "framework/model/tree_walk.h"
#include "framework/std/mask.h"
#include "host/message_log.h"

namespace host {
namespace {

/// The features of a model in the order of the model, each with its place here as its number.
using Features = std::vector<const TAVFeature*>;

/// Those features that some path of feature maps leads from to a column.
class ColumnReach {
 public:
  explicit ColumnReach(const Features& features) : reached_(features.size()) {
    for (const TAVFeature* feature : features)
      if (tav::is<TAVColumn>(*feature)) add(*feature);
    spread();
  }

  [[nodiscard]] bool contains(const TAVFeature& feature) const {
    return reached_[tav::Numbering::get(feature)];
  }

 private:
  void add(const TAVFeature& feature) {
    reached_[tav::Numbering::get(feature)] = true;
    waiting_.push_back(&feature);
  }

  /// Goes from the columns to everything that they feed, each feature once, so cycles end.
  void spread() {
    while (!waiting_.empty()) {
      const TAVFeature* source = waiting_.back();
      waiting_.pop_back();
      for (const TAVFeatureMap& map : source->sourceOf) {
        const TAVFeature* fed = map.destinationFeature.get();
        if (fed && !contains(*fed)) add(*fed);
      }
    }
  }

  std::vector<bool> reached_;  // by the features' numbers
  Features waiting_;
};

/// Whether a dimension stands in one of the folders of a cube that are called and typed `folder`.
bool isIn(const TAVClassifier& dimension, std::string_view folder) {
  const TAVNamespace* package = dimension.nameSpace.get();
  return package && package->nativeType == folder;
}

void countDimension(const TAVDimension& dimension, Summary& summary) {
  summary.dimensions += dimension.nativeType == "Dimension";
  summary.kpis += isIn(dimension, "KPIs");
}

void countObject(const TAVObject& object, Summary& summary) {
  summary.dataSources += tav::is<TAVStoreConnection>(object);
  summary.tables += tav::is<TAVTable>(object);
  summary.columns += tav::is<TAVColumn>(object);
  summary.cubes += tav::is<TAVCube>(object);
  summary.perspectives += tav::is<TAVSynonym>(object);
  if (const auto* dimension = tav::as<TAVDimension>(&object)) countDimension(*dimension, summary);
}

/// Counts the features of which the summary tells how many lead back to a column.
class ReachCounter {
 public:
  ReachCounter(const ColumnReach& reach, Summary& summary) : reach_(reach), summary_(summary) {}

  void operator()(const TAVFeature& feature) {
    if (tav::is<TAVDimensionAttribute>(feature)) count(feature, summary_.attributes);
    if (const auto* measure = tav::as<TAVMeasure>(&feature)) countMeasure(*measure);
  }

 private:
  void countMeasure(const TAVMeasure& measure) {
    const auto* dimension = tav::as<TAVDimension>(measure.classifier.get());
    if (!dimension) return;
    summary_.openExpressions += !measure.unresolved.empty();
    if (dimension->measureGroup) {
      count(measure, summary_.measures);
      summary_.rowCounts += measure.expression == "COUNT(*)" && !reach_.contains(measure);
    } else if (isIn(*dimension, "Calculated Measures")) {
      count(measure, summary_.calculatedMeasures);
    }
  }

  void count(const TAVFeature& feature, Summary::Reach& kind) const {
    ++kind.count;
    kind.reached += reach_.contains(feature);
  }

  const ColumnReach& reach_;
  Summary& summary_;
};

void writeCount(std::ostream& out, std::string_view label, std::size_t count, const std::string& more = {}) {
  fmt::print(out, "  {:<22}{:>9}{}{}\n", label, count, more.empty() ? "" : "   ", more);
}

std::string reachText(const Summary::Reach& kind) {
  if (kind.count == 0) return "";
  const std::size_t percent = kind.reached * 100 / kind.count;  // rounded down: 100 % means all
  return fmt::format("{} ({} %) with lineage to a column", kind.reached, percent);
}

}  // namespace

Summary summarize(const TAVStoreModel& model) {
  Summary summary;
  summary.database = model.getName().str();
  Features features;
  tav::forEachObject(model, [&](const TAVObject& object) {
    countObject(object, summary);
    if (const auto* feature = tav::as<TAVFeature>(&object)) {
      tav::Numbering::set(*feature, static_cast<std::uint32_t>(features.size()));
      features.push_back(feature);
    }
  });
  const ColumnReach reach(features);
  ReachCounter count(reach, summary);
  for (const TAVFeature* feature : features) count(*feature);
  return summary;
}

void writeSummary(const Summary& summary, std::size_t unresolved, std::ostream& out) {
  fmt::print(out, "Database {}\n", printable(tav::maskPasswords(summary.database)));
  writeCount(out, "Data sources", summary.dataSources);
  writeCount(out, "Tables", summary.tables);
  writeCount(out, "Columns", summary.columns);
  writeCount(out, "Dimensions", summary.dimensions);
  writeCount(out, "Attributes", summary.attributes.count, reachText(summary.attributes));
  writeCount(out, "Cubes", summary.cubes);
  writeCount(out, "Perspectives", summary.perspectives);
  std::string measures = reachText(summary.measures);
  if (summary.rowCounts > 0) measures += fmt::format(", {} counting rows", summary.rowCounts);
  writeCount(out, "Measures", summary.measures.count, measures);
  writeCount(out, "Calculated measures", summary.calculatedMeasures.count,
             reachText(summary.calculatedMeasures));
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
  const nlohmann::ordered_json document{{"database", tav::maskPasswords(summary.database)},
                                        {"dataSources", summary.dataSources},
                                        {"tables", summary.tables},
                                        {"columns", summary.columns},
                                        {"dimensions", summary.dimensions},
                                        {"attributes", reach(summary.attributes)},
                                        {"cubes", summary.cubes},
                                        {"perspectives", summary.perspectives},
                                        {"measures", reach(summary.measures)},
                                        {"rowCounts", summary.rowCounts},
                                        {"calculatedMeasures", reach(summary.calculatedMeasures)},
                                        {"kpis", summary.kpis},
                                        {"unresolvedReferences", unresolved},
                                        {"openExpressions", summary.openExpressions},
                                        {"output", output}};
  return document.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace host

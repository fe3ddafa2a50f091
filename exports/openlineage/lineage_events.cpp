#include "exports/openlineage/lineage_events.h"

#include <algorithm>

#include "exports/openlineage/dataset_inputs.h"
#include "exports/openlineage/event_time.h"
#include "exports/openlineage/facets.h"
#include "exports/openlineage/run_id.h"

namespace tav {
namespace {

class EventWriter {
 public:
  EventWriter(const LineageGraph& graph, const CatalogDatasets& datasets, const std::string& time)
      : datasets_(datasets),
        time_(time),
        facets_(graph, datasets, json_),
        inputs_(graph, datasets),
        described_(datasets.all().size()) {}

  const std::string& run(DatasetId id) {
    begin("RunEvent");
    json_.member("eventType", "COMPLETE");
    json_.open("run", '{');
    // The identifier follows from the event as it is with zeros in its place.
    const std::string zeros = "00000000-0000-0000-0000-000000000000";
    json_.member("runId", zeros);
    const std::size_t place = text_.size() - zeros.size() - 1;
    json_.close('}');
    writeJob(id);
    writeInputs(id, true);
    writeOutput(id, true);
    json_.close('}');
    NamedUuid uuid;
    uuid.add(text_);
    text_.replace(place, zeros.size(), uuid.finish());
    return text_;
  }

  const std::string& dataset(DatasetId id) {
    begin("DatasetEvent");
    json_.open("dataset", '{');
    facets_.writeReference(id);
    facets_.writeDatasetFacets(id);
    json_.close('}');
    json_.close('}');
    return text_;
  }

  const std::string& job(DatasetId id) {
    begin("JobEvent");
    writeJob(id);
    writeInputs(id, false);
    writeOutput(id, false);
    json_.close('}');
    return text_;
  }

 private:
  void begin(std::string_view kind) {
    text_.clear();
    json_.begin('{');
    json_.member("eventTime", time_);
    json_.member("producer", lineageProducer());
    json_.member("schemaURL",
                 std::string("https://openlineage.io/spec/2-0-2/OpenLineage.json#/$defs/").append(kind));
  }

  /// A job is called like the dataset that it makes.
  void writeJob(DatasetId id) {
    json_.open("job", '{');
    facets_.writeReference(id);
    facets_.writeJobFacets(id);
    json_.close('}');
  }

  void writeInputs(DatasetId id, bool withFacets) {
    json_.open("inputs", '[');
    for (const DatasetId input : inputs_.of(id)) {
      json_.open('{');
      facets_.writeReference(input);
      // What the model makes is told where it is made; a table that many read, where it comes up first.
      if (withFacets && !datasets_.get(input).made && !described_[input]) {
        described_[input] = true;
        facets_.writeDatasetFacets(input);
      }
      json_.close('}');
    }
    json_.close(']');
  }

  void writeOutput(DatasetId id, bool withFacets) {
    json_.open("outputs", '[');
    json_.open('{');
    facets_.writeReference(id);
    if (withFacets) facets_.writeDatasetFacets(id);
    json_.close('}');
    json_.close(']');
  }

  const CatalogDatasets& datasets_;
  const std::string& time_;
  std::string text_;
  JsonWriter json_{text_};
  FacetWriter facets_;
  DatasetInputs inputs_;
  std::vector<bool> described_;
};

}  // namespace

LineageEvents::LineageEvents(const DetailedModel& model, const ExportOptions& options)
    : graph_(model, options.map),
      datasets_(graph_, options.server),
      time_(eventTime(model.model, options)),
      static_(options.staticEvents) {}

std::size_t LineageEvents::count() const noexcept {
  const auto made = std::count_if(datasets_.all().begin(), datasets_.all().end(),
                                  [](const CatalogDataset& dataset) { return dataset.made; });
  return static_cast<std::size_t>(made) + (static_ ? datasets_.all().size() : 0);
}

void LineageEvents::write(const std::function<void(std::string_view event)>& take) const {
  EventWriter writer(graph_, datasets_, time_);
  for (DatasetId id = 0; id < datasets_.all().size(); ++id) {
    if (static_) take(writer.dataset(id));
    if (datasets_.get(id).made) take(static_ ? writer.job(id) : writer.run(id));
  }
}

extern const ExportFormat kOpenLineageFormat{
    .name = "openlineage",
    .description = "lineage as events of the OpenLineage standard, one a line",
    .write =
        [](const DetailedModel& model, const ExportOptions& options, std::ostream& out) {
          LineageEvents(model, options).write([&](std::string_view event) { out << event << '\n'; });
        },
    .extension = ".ndjson",
    .joinsModels = true};

}  // namespace tav

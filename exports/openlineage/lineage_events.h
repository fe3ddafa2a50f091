#pragma once

// A model's lineage as events of the OpenLineage standard.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "exports/formats.h"
#include "exports/openlineage/datasets.h"
#include "lineage/lineage_graph.h"

namespace tav {

/// The events that tell of a model: a completed run for each dataset that the model makes, or, with
/// `staticEvents`, all datasets and the jobs that make them. The same model, options and time give the same
/// events to the byte.
class LineageEvents {
 public:
  /// Renumbers the model, which must live longer. Of the options, `input`, `server` and `staticEvents` count.
  /// Throws what eventTime() throws.
  LineageEvents(const DetailedModel& model, const ExportOptions& options);

  [[nodiscard]] std::size_t count() const noexcept;
  /// Hands over one event after the other: a JSON object on one line, without a line end, that is there until
  /// `take` returns.
  void write(const std::function<void(std::string_view event)>& take) const;

 private:
  LineageGraph graph_;
  CatalogDatasets datasets_;
  std::string time_;
  bool static_;
};

}  // namespace tav

#pragma once

// What differs between many models: an estate at two times, or what two folders or estates hold.

#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "exports/answers/shown_text.h"
#include "exports/versions.h"
#include "lineage/model_diff.h"

namespace tav {

/// What is compared: versions of two times, or the models of two places.
struct DiffEnds {
  std::string before;
  std::string after;
  bool areTimes = false;
};

/// Tells of one model after the other, as it is asked for. Text, Markdown or JSON, each with a heading for
/// the model and below it what writeDiffText() and so on write.
class EstateDiffReport {
 public:
  virtual ~EstateDiffReport() = default;
  virtual void begin(const DiffEnds& ends) = 0;
  /// `diff` is null for a model that was added or removed.
  virtual void add(const EstateChange& change, const ModelDiff* diff) = 0;
  /// `complete` says whether all models were compared.
  virtual void end(bool complete) = 0;
};

/// `format` is "text", "markdown" or "json": `{"format":"xmla-estate-diff/1","since":...,"until":...,
/// "models":[{"source":...,"change":"changed","old":{"name":...,"imported":...},"new":...,"diff":...}]}`; of
/// places `{"format":"xmla-models-diff/1","old":...,"new":...,"models":[...]}` without times.
std::unique_ptr<EstateDiffReport> makeEstateDiffReport(std::string_view format, std::ostream& out,
                                                       const TextStyle& style = {});

}  // namespace tav

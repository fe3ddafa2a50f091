#include "exports/answers/coverage_models.h"

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <string_view>

#include "exports/answers/notes.h"
#include "framework/std/json_writer.h"
#include "framework/std/mask.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

constexpr std::string_view kTotal = "Total";
constexpr std::array kTitles{"attributes", "reached", "",           "measures",
                             "reached",    "",        "row counts", "not found"};
constexpr int kGap = 2;

std::string percentText(const CoverageCount& kind) {
  return kind.count == 0 ? "" : std::to_string(kind.reached * 100 / kind.count) + " %";
}

ModelCoverage totalOf(std::span<const ModelCoverage> models) {
  ModelCoverage total;
  total.model = kTotal;
  for (const ModelCoverage& model : models) {
    total.attributes.add(model.attributes);
    total.measures.add(model.measures);
    for (std::size_t i = 0; i < kOpenNameStateCount; ++i) total.nameCounts[i] += model.nameCounts[i];
  }
  return total;
}

std::size_t notFound(const ModelCoverage& model) {
  return model.nameCounts[static_cast<std::size_t>(OpenNameState::mistake)];
}

class ModelsText {
 public:
  ModelsText(std::span<const ModelCoverage> models, std::ostream& out, const TextStyle& style)
      : models_(models), out_(out), text_(out, style), width_(kTotal.size()) {
    for (const ModelCoverage& model : models) width_ = std::max(width_, columnsOf(printable(model.model)));
  }

  void write() {
    out_ << std::string(width_, ' ');
    for (const char* title : kTitles) cell(title, title);
    out_ << "\n";
    for (const ModelCoverage& model : models_) writeLine(model);
    const ModelCoverage total = totalOf(models_);
    writeLine(total);
    out_ << "\nTotal: " << total.percent() << " % trace back to a database column.\n";
    std::vector<std::string> notes;
    for (const ModelCoverage& model : models_)
      for (const std::string& note : model.notes) notes.push_back("model " + model.model + ": " + note);
    writeNotes(notes, text_);
  }

 private:
  void cell(const char* title, const std::string& text) const {
    constexpr int kPercent = 5;
    const int width = *title == '\0' ? kPercent : static_cast<int>(std::strlen(title));
    out_ << std::setw(width + kGap) << text;
  }

  void writeLine(const ModelCoverage& model) const {
    const std::string name = printable(model.model);
    out_ << name << std::string(width_ - std::min(width_, columnsOf(name)), ' ');
    const std::array<std::string, kTitles.size()> cells{std::to_string(model.attributes.count),
                                                        std::to_string(model.attributes.reached),
                                                        percentText(model.attributes),
                                                        std::to_string(model.measures.count),
                                                        std::to_string(model.measures.reached),
                                                        percentText(model.measures),
                                                        std::to_string(model.measures.rowCounts),
                                                        std::to_string(notFound(model))};
    for (std::size_t i = 0; i < cells.size(); ++i) cell(kTitles[i], cells[i]);
    out_ << "\n";
  }

  std::span<const ModelCoverage> models_;
  std::ostream& out_;
  ShownText text_;
  std::size_t width_;
};

void writeCounts(JsonWriter& json, const ModelCoverage& model) {
  json.member("percent", model.percent());
  json.open("names", '{');
  for (std::size_t state = 0; state < kOpenNameStateCount; ++state)
    json.member(openNameStateText(static_cast<OpenNameState>(state)), model.nameCounts[state]);
  json.close('}');
  for (const auto& [name, kind] :
       {std::pair("attributes", &model.attributes), {"measures", &model.measures}}) {
    json.open(name, '{');
    json.member("count", kind->count);
    json.member("reached", kind->reached);
    json.member("rowCounts", kind->rowCounts);
    json.close('}');
  }
}

}  // namespace

ModelCoverage summarizeCoverage(const LineageGraph& graph, const Coverage& coverage) {
  return {.model = graph.modelName(),
          .input = {},
          .attributes = coverage.attributes,
          .measures = coverage.measures,
          .nameCounts = coverage.nameCounts,
          .notes = graph.notes()};
}

void writeCoverageText(std::span<const ModelCoverage> models, std::ostream& out, const TextStyle& style) {
  ModelsText(models, out, style).write();
}

void writeCoverageJson(std::span<const ModelCoverage> models, std::ostream& out) {
  std::string text;
  JsonWriter json(text);
  json.begin('{');
  json.member("format", "xmla-coverage-models/1");
  writeCounts(json, totalOf(models));
  json.open("models", '[');
  for (const ModelCoverage& model : models) {
    json.line();
    json.open('{');
    json.member("model", model.model);
    json.member("input", maskPasswords(model.input));
    writeCounts(json, model);
    if (!model.notes.empty()) {
      json.open("notes", '[');
      for (const std::string& note : model.notes) json.value(note);
      json.close(']');
    }
    json.close('}');
  }
  json.close(']');
  json.close('}');
  out << text << "\n";
}

}  // namespace tav

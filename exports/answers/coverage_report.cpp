#include "exports/answers/coverage_report.h"

#include <algorithm>
#include <iomanip>

#include "exports/answers/notes.h"
#include "framework/std/json_writer.h"
#include "framework/std/printable.h"
#include "lineage/gap_reason.h"

namespace tav {
namespace {

constexpr std::string_view kDimensions = "Dimensions";
constexpr int kCountWidth = 8;
constexpr std::size_t kIndent = 4;

std::string titleOf(const LineageGraph& graph, const CubeCoverage& cube) {
  return cube.cube == kNoNode ? std::string(kDimensions) : "Cube " + printable(graph.name(cube.cube));
}

std::string percentText(std::size_t part, std::size_t whole) {
  return whole == 0 ? "" : std::to_string(part * 100 / whole) + " %";
}

class CoverageText {
 public:
  CoverageText(const LineageGraph& graph, const Coverage& coverage, std::ostream& out, const TextStyle& style)
      : graph_(graph), coverage_(coverage), out_(out), text_(out, style) {
    for (const CubeCoverage& cube : coverage.cubes)
      width_ = std::max(width_, columnsOf(titleOf(graph, cube)));
  }

  void write() {
    writeTable();
    out_ << "\nTotal: " << coverage_.percent() << " % trace back to a database column.\n";
    writeNameCounts();
    for (const CubeCoverage& cube : coverage_.cubes) writeGaps(cube);
    writeNames();
    writeNotes(graph_, out_, text_.style());
  }

 private:
  /// Without any, it is still said that none is missing.
  void writeNameCounts() const {
    const std::size_t missing = coverage_.namesThat(OpenNameState::mistake);
    out_ << missing
         << (missing == 1 ? " name in expressions is not found" : " names in expressions are not found");
    if (const std::size_t beyond = coverage_.namesThat(OpenNameState::beyond); beyond > 0)
      out_ << "; " << beyond << " more " << (beyond == 1 ? "leads" : "lead") << " beyond this definition";
    if (const std::size_t others = coverage_.namesThat(OpenNameState::exists); others > 0)
      out_ << "; " << others << " more " << (others == 1 ? "is" : "are") << " no attribute or measure";
    out_ << ".\n";
  }

  void writeTable() const {
    out_ << std::left << std::setw(static_cast<int>(width_)) << "" << std::right;
    for (const char* title : {"attributes", "reached", "", "measures", "reached", "", "row counts"})
      out_ << std::setw(*title == '\0' ? kCountWidth - 2 : kCountWidth + 2) << title;
    out_ << "\n";
    for (const CubeCoverage& cube : coverage_.cubes) {
      const std::string title = titleOf(graph_, cube);
      out_ << title << std::string(width_ - columnsOf(title), ' ');
      writeCount(cube.attributes);
      if (cube.cube != kNoNode) {
        writeCount(cube.measures);
        out_ << std::setw(kCountWidth + 2) << cube.measures.rowCounts;
      }
      out_ << "\n";
    }
  }

  void writeCount(const CoverageCount& kind) const {
    out_ << std::setw(kCountWidth + 2) << kind.count << std::setw(kCountWidth + 2) << kind.reached
         << std::setw(kCountWidth - 2) << percentText(kind.reached, kind.count);
  }

  void writeTitle(const std::string& title) {
    text_.begin().end();
    text_.begin(0, kIndent).add(title, Look::title).end();
  }

  void writeGaps(const CubeCoverage& cube) {
    if (cube.gaps.empty()) return;
    writeTitle(titleOf(graph_, cube) + ": these do not trace back to a database column");
    for (const CoverageGap& gap : cube.gaps) {
      text_.begin(kIndent, 2 * kIndent).add(printable(graph_.qualifiedName(gap.node)), Look::name);
      text_.add(": ").add(printable(gap.reason)).end();
    }
  }

  void writeNames() {
    if (coverage_.names.empty()) return;
    writeTitle("Names in expressions that lead to no attribute or measure");
    for (const CoverageName& open : coverage_.names) {
      text_.begin(kIndent, 2 * kIndent).add(printable(graph_.qualifiedName(open.node)), Look::name);
      text_.add(": ").add(printable(open.name.name), Look::code);
      text_.add(": ").add(printable(openNameWords(open.name))).end();
    }
  }

  const LineageGraph& graph_;
  const Coverage& coverage_;
  std::ostream& out_;
  ShownText text_;
  std::size_t width_ = kDimensions.size();
};

void writeCountJson(JsonWriter& json, std::string_view name, const CoverageCount& kind) {
  json.open(name, '{');
  json.member("count", kind.count);
  json.member("reached", kind.reached);
  json.member("rowCounts", kind.rowCounts);
  json.close('}');
}

void writeCubeJson(JsonWriter& json, const LineageGraph& graph, const CubeCoverage& cube) {
  json.open('{');
  if (cube.cube == kNoNode)
    json.raw("cube", "null");
  else
    json.member("cube", graph.name(cube.cube));
  writeCountJson(json, "attributes", cube.attributes);
  if (cube.cube != kNoNode) writeCountJson(json, "measures", cube.measures);
  json.open("gaps", '[');
  for (const CoverageGap& gap : cube.gaps) {
    json.line();
    json.open('{');
    json.member("path", graph.path(gap.node));
    json.member("qualifiedName", graph.qualifiedName(gap.node));
    json.member("reason", gap.reason);
    json.close('}');
  }
  json.close(']');
  json.close('}');
}

void writeNamesJson(JsonWriter& json, const LineageGraph& graph, const Coverage& coverage) {
  json.open("openNames", '[');
  for (const CoverageName& open : coverage.names) {
    json.line();
    json.open('{');
    json.member("path", graph.path(open.node));
    json.member("qualifiedName", graph.qualifiedName(open.node));
    writeOpenNameJson(json, open.name);
    json.close('}');
  }
  json.close(']');
}

}  // namespace

void writeCoverageText(const LineageGraph& graph, const Coverage& coverage, std::ostream& out,
                       const TextStyle& style) {
  CoverageText(graph, coverage, out, style).write();
}

void writeCoverageJson(const LineageGraph& graph, const Coverage& coverage, std::ostream& out) {
  std::string text;
  JsonWriter json(text);
  json.begin('{');
  json.member("format", "xmla-coverage/1");
  json.member("percent", coverage.percent());
  json.open("names", '{');
  for (std::size_t state = 0; state < kOpenNameStateCount; ++state)
    json.member(openNameStateText(static_cast<OpenNameState>(state)), coverage.nameCounts[state]);
  json.close('}');
  json.open("cubes", '[');
  for (const CubeCoverage& cube : coverage.cubes) {
    json.line();
    writeCubeJson(json, graph, cube);
  }
  json.close(']');
  writeNamesJson(json, graph, coverage);
  writeNotesJson(json, graph);
  json.close('}');
  out << text << "\n";
}

}  // namespace tav

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <span>

#include "host/estate_import.h"

namespace host {
namespace {

using tav::Look;

constexpr std::array<std::string_view, 8> kHeadings{"FILE",       "OUTCOME",  "CUBES",   "MEASURES",
                                                    "UNRESOLVED", "WARNINGS", "SECONDS", "MODEL OR CAUSE"};
constexpr std::size_t kWidestFile = 60;  // a longer name moves its own line only

/// The cells of a file, in the order of the headings.
using Cells = std::array<std::string, kHeadings.size()>;

/// The sum of numbers of a summary, each given by the names that lead to it; a dash where there is no
/// summary.
std::string sumIn(const nlohmann::ordered_json& summary, std::initializer_list<const char*> pointers) {
  std::size_t sum = 0;
  for (const char* pointer : pointers) {
    const nlohmann::ordered_json::json_pointer place(pointer);
    if (!summary.contains(place)) return "-";
    sum += summary[place].get<std::size_t>();
  }
  return std::to_string(sum);
}

/// A message about a file does not name it again where it stands behind that name.
std::string withoutFile(std::string cause, const std::string& file) {
  const std::size_t place = cause.starts_with('[') ? cause.find("] ") + 2 : 0;
  if (cause.compare(place, file.size() + 2, file + ": ") == 0) cause.erase(place, file.size() + 2);
  return cause;
}

/// The folder that several paths share, with its slash; empty where there is none, or one path.
std::string_view commonFolder(std::span<const std::string_view> paths) {
  if (paths.size() < 2) return {};
  std::string_view common = paths.front();
  for (const std::string_view path : paths) {
    const auto differs = std::mismatch(common.begin(), common.end(), path.begin(), path.end()).first;
    common = common.substr(0, static_cast<std::size_t>(differs - common.begin()));
  }
  return common.substr(0, common.rfind('/') + 1);
}

Look lookOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::ok:
    case Outcome::unchanged:
      return Look::good;
    case Outcome::warnings:
    case Outcome::incomplete:
      return Look::changed;
    default:
      return Look::bad;
  }
}

class EstateTable {
 public:
  EstateTable(const std::vector<EstateFile>& files, const EstateRun& run, const tav::TextStyle& style,
              std::ostream& out)
      : run_(run), text_(out, style) {
    std::vector<std::string_view> inputs;
    std::vector<std::string_view> outputs;
    for (const EstateFile& file : files) {
      inputs.push_back(file.input);
      if (!file.output.empty()) outputs.push_back(file.output);
    }
    inputFolder_ = commonFolder(inputs);
    outputFolder_ = commonFolder(outputs);
    for (std::size_t i = 0; i < files.size(); ++i) rows_.push_back(cellsOf(files[i], run.results[i]));
  }

  void write() {
    writeFolder("Files in ", inputFolder_);
    writeFolder("Models in ", outputFolder_);
    const std::vector<std::string> lines = tableLines();
    const auto isTooWide = [width = text_.style().width](const std::string& line) {
      return width > 0 && tav::columnsOf(line) > width;
    };
    if (std::none_of(lines.begin(), lines.end(), isTooWide))
      for (const std::string& line : lines) text_.begin().add(line).end();
    else
      for (std::size_t i = 0; i < rows_.size(); ++i) writeRecord(rows_[i], lookOf(run_.results[i].outcome));
    text_.begin().add(totals()).end();
  }

 private:
  [[nodiscard]] Cells cellsOf(const EstateFile& file, const EstateResult& result) const {
    const auto summary = nlohmann::ordered_json::parse(result.summary.empty() ? "null" : result.summary);
    std::string place = withoutFile(result.cause, file.input);
    if (place.empty() && !file.output.empty())
      place = file.output.substr(outputFolder_.size());
    else if (place.empty() && summary.is_object())
      place = summary.value("database", "");
    return {printable(file.input.substr(inputFolder_.size())),
            std::string(outcomeName(result.outcome)),
            sumIn(summary, {"/cubes"}),
            sumIn(summary, {"/measures/count", "/calculatedMeasures/count"}),
            sumIn(summary, {"/unresolvedReferences"}),
            std::to_string(result.warnings),
            fmt::format("{:.1f}", result.seconds),
            printable(place)};
  }

  [[nodiscard]] std::vector<std::string> tableLines() const {
    std::size_t width = kHeadings.front().size();
    for (const Cells& cells : rows_) width = std::max(width, std::min(kWidestFile, cells.front().size()));
    const auto line = [&](const auto& cells) {
      return fmt::format("{:<{}}  {:<13}  {:>5}  {:>8}  {:>10}  {:>8}  {:>7}  {}", cells[0], width, cells[1],
                         cells[2], cells[3], cells[4], cells[5], cells[6], cells[7]);
    };
    std::vector<std::string> lines{line(kHeadings)};
    for (const Cells& cells : rows_) lines.push_back(line(cells));
    return lines;
  }

  /// What a row of the table says, below each other.
  void writeRecord(const Cells& cells, Look outcome) {
    constexpr std::array<std::string_view, 4> kCounts{"cube", "measure", "unresolved reference", "warning"};
    constexpr std::size_t kIndent = 4;
    text_.begin(0, kIndent).add(cells[0], Look::name).add("  ").add(cells[1], outcome).end();
    text_.begin(kIndent, kIndent);
    for (std::size_t i = 0; i < kCounts.size(); ++i)
      if (const std::string& count = cells[i + 2]; count != "-")
        text_.add(fmt::format("{} {}{}, ", count, kCounts[i], count == "1" ? "" : "s"));
    text_.add(cells[6]).add(" s").end();
    if (!cells[7].empty()) text_.begin(kIndent, kIndent).add(cells[7]).end();
  }

  void writeFolder(std::string_view what, std::string_view folder) {
    if (!folder.empty()) text_.begin().add(what).add(printable(folder)).end();
  }

  [[nodiscard]] std::string totals() const {
    const auto some = [&](Outcome outcome) {
      const std::size_t count = countOf(run_, outcome);
      return count > 0 ? fmt::format("{} {}, ", count, outcomeName(outcome)) : std::string();
    };
    return fmt::format(
        "{} file{} in {:.1f} s: {} ok, {} with warnings, {}{}{} without a definition, {} failed",
        rows_.size(), rows_.size() == 1 ? "" : "s", run_.seconds, countOf(run_, Outcome::ok),
        countOf(run_, Outcome::warnings), some(Outcome::unchanged), some(Outcome::incomplete),
        countOf(run_, Outcome::noDefinition), countOf(run_, Outcome::failed));
  }

  const EstateRun& run_;
  tav::ShownText text_;
  std::string_view inputFolder_;
  std::string_view outputFolder_;
  std::vector<Cells> rows_;
};

}  // namespace

void writeEstateTable(const std::vector<EstateFile>& files, const EstateRun& run, const tav::TextStyle& style,
                      std::ostream& out) {
  EstateTable(files, run, style, out).write();
}

}  // namespace host

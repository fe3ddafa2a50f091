// xmla-bench: measures the import on made-up definitions, beside `xmllint --noout` on the same files in the
// same run, because machines differ. Every time is the best of several runs: whatever disturbs a run makes it
// longer. The programs take turns, so that a disturbance does not meet one of them alone. What is compared
// with itself at another size is processor time, which others that use the machine lengthen least.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "benchmarks/beside_xmllint.h"
#include "benchmarks/definition.h"
#include "benchmarks/estate_import.h"
#include "benchmarks/folders.h"
#include "benchmarks/process.h"
#include "benchmarks/temporary_folder.h"

namespace tav::bench {
namespace {

namespace fs = std::filesystem;

constexpr double kMegabyte = 1e6;
constexpr double kSmallest =
    .01;  // MB; so little that an import of it is the start of the program and its end
constexpr std::uint64_t kSeed = 1;
constexpr double kLargestShareOfXmllint = 0.5;
constexpr double kLargestDense = 1;
constexpr double kLargestDensePeak = 6;
constexpr double kLargestPerMegabyte = 1.1;
constexpr double kLargestPeak = 1.5;
constexpr double kLongestStart = 5;
// By the object there is little work and much memory: what grows is the share that no cache holds.
constexpr double kLargestPerObject = 2;
// An export reads the definition and writes: the writing takes no longer than an import.
constexpr double kExportPerImport = 1;
// The start of Java, which the smaller one carries too, makes the larger one cheaper by the MB if anything.
constexpr double kLargestTabularGrowth = 1.2;
constexpr double kFolderPerFile = 1.5;

/// A kind of definition that is a folder of files.
struct FolderKind {
  const char* name;
  std::uint64_t files;    // beside the few that each has
  const char* extension;  // of the one file that holds the same
  void (*write)(const fs::path& folder, const fs::path& file, std::uint64_t count);
};
constexpr std::array<FolderKind, 2> kFolders{
    {{"TMDL", 500, "tmdl", writeTmdl}, {"project", 500, "asdatabase", writeProject}}};

/// A kind of definition that has one thing many times.
struct Kind {
  const char* name;
  std::uint64_t objects;  // in one of them: so many fewer are made
};
constexpr std::array<Kind, 8> kKinds{{{"equal-names", 1},
                                      {"attributes", 1},
                                      {"uneven", 1},
                                      {"tables", 1},
                                      {"measures", 1},
                                      {"equal-measures", 1},
                                      {"references", 1},
                                      {"cubes", 500}}};
/// Kinds that are all objects and nothing that an import passes over, which costs the most by the MB.
constexpr std::array kDense{"levels",   "attributes",     "columns", "tables",
                            "measures", "equal-measures", "uneven",  "equal-names"};
constexpr std::uint64_t kDenseObjects = 70'000;

/// What a model is written as: the command, and its arguments behind the definition.
struct Output {
  const char* name;
  std::vector<std::string> command;
};
const std::array kOutputs{Output{"json", {"export", "--format", "json"}},
                          Output{"openlineage", {"export", "--format", "openlineage"}},
                          Output{"datahub", {"export", "--format", "datahub"}},
                          Output{"csv", {"export", "--format", "csv"}},
                          Output{"sqlite", {"export", "--format", "sqlite"}},
                          Output{"dot", {"export", "--format", "dot"}},
                          Output{"mermaid", {"export", "--format", "mermaid"}},
                          Output{"report", {"report"}}};
// The room that the largest files and the models made of them take, with much to spare.
constexpr std::uintmax_t kRoom = std::uintmax_t{2} << 30;

struct Settings {
  std::vector<double> sizes{1, 10, 100};                   // MB, beside kSmallest
  std::vector<double> tabular{7, 70};                      // MB
  std::vector<std::uint64_t> counts{1000, 10000, 100000};  // objects
  unsigned repeat = 5;
  bool check = false;
  fs::path program;
  fs::path parser;
  fs::path samples;  // a folder of definitions; empty: none
};

struct Row {
  double megabytes = 0;  // of the file as it came out
  Best xmllint, parse, import;
};

class Bench {
 public:
  explicit Bench(Settings settings) : settings_(std::move(settings)), folder_(kRoom) {}

  /// Prints the tables; false when a bound is not kept.
  bool measure();

 private:
  template <class Write> double generate(Write write) const;
  Row measureSize(double megabytes) const;
  void printSizes() const;
  bool printBounds() const;
  /// The densest kinds, and real definitions where there are some, beside xmllint.
  bool printDense() const;
  /// Imports of tabular definitions, which Java reads.
  bool printTabular() const;
  /// Imports of folders beside those of one file that holds the same.
  bool printFolders() const;
  bool printFolder(const FolderKind& kind) const;
  /// What each export of the largest definition takes beside its import.
  bool printExports();
  bool printExport(const Output& output, const Best& import);
  bool printScaling() const;
  /// One line of the last table: the import of `numbers` of a kind, each of `size` of what the generator
  /// counts.
  bool printKind(const char* kind, const std::vector<std::uint64_t>& numbers, std::uint64_t size) const;
  std::vector<std::string> importCommand() const { return importCommand(file_); }
  std::vector<std::string> importCommand(const std::string& input) const;
  /// The row of that size, or null when it was not measured.
  const Row* at(double megabytes) const;
  /// What the program takes to start and end.
  const Best& start() const { return rows_.at(kSmallest).import; }

  Settings settings_;
  TemporaryFolder folder_;
  std::string file_ = folder_.path() / "definition.asdatabase";
  std::string model_ = folder_.path() / "model.xml";
  std::map<double, Row> rows_;  // by the size asked for
};

/// Writes the definition anew; its size in MB.
template <class Write> double Bench::generate(Write write) const {
  std::ofstream out(file_, std::ios::binary);
  write(out);
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file_);
  return static_cast<double>(fs::file_size(file_)) / kMegabyte;
}

std::vector<std::string> Bench::importCommand(const std::string& input) const {
  return {settings_.program, "import", input, "-o", model_, "--quiet", "--json"};
}

const Row* Bench::at(double megabytes) const {
  const auto found = rows_.find(megabytes);
  return found == rows_.end() ? nullptr : &found->second;
}

Row Bench::measureSize(double megabytes) const {
  Row row;
  row.megabytes = generate([&](std::ostream& out) {
    writeEstate(out, static_cast<std::uint64_t>(std::llround(megabytes * kMegabyte)), kSeed);
  });
  // Short runs are disturbed more, and more of them take no time.
  const unsigned runs = settings_.repeat * (megabytes <= 1 ? 4 : megabytes <= 10 ? 2 : 1);
  for (unsigned i = 0; i < runs; ++i) {
    row.xmllint.take(run({"xmllint", "--noout", file_}, folder_.path()));
    row.parse.take(run({settings_.parser, file_}, folder_.path()));
    row.import.take(run(importCommand(), folder_.path()));
  }
  return row;
}

void Bench::printSizes() const {
  fmt::print("{:>10} {:>10} {:>10} {:>10} {:>10} {:>8} {:>9} {:>6}\n", "size MB", "xmllint", "parse",
             "import s", "import", "ratio", "peak MB", "/size");
  for (const auto& [size, row] : rows_) {
    const double peak = static_cast<double>(row.import.peakBytes) / kMegabyte;
    fmt::print("{:>10.3f} {:>10.4f} {:>10.4f} {:>10.4f} {:>10.4f} {:>8.2f} {:>9.1f} {:>6.1f}\n",
               row.megabytes, row.xmllint.processor, row.parse.processor, row.import.wall,
               row.import.processor, row.import.processor / row.xmllint.processor, peak,
               peak / row.megabytes);
  }
  fmt::print(
      "xmllint, parse, import: seconds of processor time, user and system. ratio: import / xmllint.\n"
      "import s: from its start to its end.\n\n");
}

bool Bench::printBounds() const {
  bool kept = true;
  const auto bound = [&kept](const std::string& what, double measured, double most, const char* unit) {
    const bool ok = measured <= most;
    kept = kept && ok;
    fmt::print("{:<52} {:>8.2f}{:<3} {:>9.2f}{:<3} {}\n", what, most, unit, measured, unit,
               ok ? "ok" : "OVER");
  };
  fmt::print("{:<52} {:>8}    {:>9}\n", "measure", "at most", "measured");
  for (const double size : {10., 100.}) {
    if (const Row* row = at(size)) {
      bound(fmt::format("import / xmllint --noout at {:.0f} MB", size),
            row->import.processor / row->xmllint.processor, kLargestShareOfXmllint, "");
    }
  }
  const Row *one = at(1), *hundred = at(100);
  if (one && hundred) {
    const auto perMegabyte = [&](const Row& row) {
      return (row.import.processor - start().processor) / row.megabytes;
    };
    bound("cost per MB at 100 MB / at 1 MB, start taken off", perMegabyte(*hundred) / perMegabyte(*one),
          kLargestPerMegabyte, "");
  }
  if (hundred)
    bound("peak memory / file size at 100 MB",
          static_cast<double>(hundred->import.peakBytes) / kMegabyte / hundred->megabytes, kLargestPeak, "");
  bound("start of the program to its exit on 10 KB", start().wall * 1000, kLongestStart, " ms");
  fmt::print("\n");
  return kept;
}

bool Bench::printDense() const {
  const BesideXmllint table({settings_.program, settings_.parser}, folder_.path(), settings_.repeat,
                            {kLargestDense, kLargestDensePeak});
  table.printHead(fmt::format("dense, {} objects", kDenseObjects));
  bool kept = true;
  for (const char* kind : kDense) {
    generate([&](std::ostream& out) { writeMany(out, kind, kDenseObjects); });
    kept = table.printFile(kind, file_) && kept;
  }
  if (!settings_.samples.empty()) {
    table.printHead("sample");
    kept = table.printSamples(settings_.samples) && kept;
  }
  fmt::print(
      "Processor time. reading: parse-definition, which reads the document and nothing else. details: what\n"
      "--no-details saves.\n\n");
  return kept;
}

bool Bench::printTabular() const {
  if (settings_.tabular.empty()) return true;
  fmt::print("{:>10} {:>10} {:>10} {:>8} {:>9} {:>6}\n", "tabular MB", "import s", "cpu s", "s/MB", "peak MB",
             "/size");
  double first = 0, last = 0;
  for (const double size : settings_.tabular) {
    const double megabytes = generate([&](std::ostream& out) {
      writeTabular(out, static_cast<std::uint64_t>(std::llround(size * kMegabyte)), kSeed);
    });
    Best best;
    for (unsigned i = 0; i < settings_.repeat; ++i) best.take(run(importCommand(), folder_.path()));
    const double peak = static_cast<double>(best.peakBytes) / kMegabyte;
    last = best.processor / megabytes;
    if (first == 0) first = last;
    fmt::print("{:>10.3f} {:>10.4f} {:>10.4f} {:>8.3f} {:>9.1f} {:>6.1f}\n", megabytes, best.wall,
               best.processor, best.wall / megabytes, peak, peak / megabytes);
    std::fflush(stdout);
  }
  const double growth = last / first;
  const bool kept = growth <= kLargestTabularGrowth;
  fmt::print("cpu per MB, last / first: {:.2f}, at most {:.2f} {}. peak: Java, or the program beside it.\n\n",
             growth, kLargestTabularGrowth, kept ? "ok" : "OVER");
  return kept;
}

bool Bench::printFolder(const FolderKind& kind) const {
  const fs::path folder = folder_.path() / "folder";
  const fs::path file = folder_.path() / fmt::format("file.{}", kind.extension);
  kind.write(folder, file, kind.files);
  Best many, one;
  for (unsigned i = 0; i < settings_.repeat; ++i) {
    many.take(run(importCommand(folder), folder_.path()));
    one.take(run(importCommand(file), folder_.path()));
  }
  const double megabytes = static_cast<double>(fs::file_size(file)) / kMegabyte;
  fs::remove_all(folder);
  fs::remove(file);
  const double ratio = many.processor / one.processor;
  const bool ok = ratio <= kFolderPerFile;
  fmt::print("{:<14} {:>8} {:>8.1f} {:>10.3f} {:>10.3f} {:>8.2f} {:>8.2f} {}\n", kind.name, kind.files,
             megabytes, many.processor, one.processor, ratio, kFolderPerFile, ok ? "ok" : "OVER");
  std::fflush(stdout);
  return ok;
}

bool Bench::printFolders() const {
  fmt::print("{:<14} {:>8} {:>8} {:>10} {:>10} {:>8} {:>8}\n", "folder", "files", "MB", "cpu s", "one file",
             "ratio", "at most");
  bool kept = true;
  for (const FolderKind& kind : kFolders) kept = printFolder(kind) && kept;
  fmt::print("\n");
  return kept;
}

bool Bench::printExport(const Output& output, const Best& import) {
  const fs::path folder = folder_.path() / "exported";
  std::vector<std::string> command{settings_.program};
  command.insert(command.end(), output.command.begin(), output.command.end());
  command.insert(command.end(), {file_, "-o", folder / "out", "--quiet"});
  Best best;
  std::uintmax_t bytes = 0;
  for (unsigned i = 0; i < settings_.repeat; ++i) {
    fs::remove_all(folder);
    fs::create_directory(folder);
    best.take(run(command, folder_.path()));
    bytes = 0;
    for (const auto& file : fs::directory_iterator(folder)) bytes += file.file_size();
  }
  fs::remove_all(folder);
  const double beyond = std::max(0., best.wall - import.wall) / import.wall;
  const bool ok = beyond <= kExportPerImport;
  fmt::print("{:<14} {:>8.3f} {:>8.1f} {:>9.1f} {:>10.2f} {:>8.2f} {}\n", output.name, best.wall,
             static_cast<double>(bytes) / kMegabyte, static_cast<double>(best.peakBytes) / kMegabyte, beyond,
             kExportPerImport, ok ? "ok" : "OVER");
  return ok;
}

bool Bench::printExports() {
  const double largest = settings_.sizes.back();
  Best import;
  const double megabytes = generate([&](std::ostream& out) {
    writeEstate(out, static_cast<std::uint64_t>(std::llround(largest * kMegabyte)), kSeed);
  });
  for (unsigned i = 0; i < settings_.repeat; ++i) import.take(run(importCommand(), folder_.path()));
  fmt::print("{:<14} {:>8} {:>8} {:>9} {:>10} {:>8}\n", "export", "s", "MB", "peak MB", "beyond", "at most");
  bool kept = true;
  for (const Output& output : kOutputs) kept = printExport(output, import) && kept;
  fmt::print(
      "From the definition of {:.0f} MB, whose import takes {:.3f} s. s: the whole run, the reading of the\n"
      "definition included. beyond: what it takes longer than the import, as a share of that.\n\n",
      megabytes, import.wall);
  return kept;
}

bool Bench::printKind(const char* kind, const std::vector<std::uint64_t>& numbers, std::uint64_t size) const {
  fmt::print("{:<14}", kind);
  double first = 0, last = 0;
  Best best;
  for (const std::uint64_t number : numbers) {
    generate([&](std::ostream& out) { writeMany(out, kind, number * size); });
    best = {};
    // Short runs are disturbed more; about a second of them is enough.
    double spent = 0;
    for (unsigned i = 0; i < 2 || (i < 4 * settings_.repeat && spent < 1); ++i) {
      best.take(run(importCommand(), folder_.path()));
      spent += best.wall;
    }
    last = std::max(0., best.processor - start().processor) / static_cast<double>(number) * 1e6;
    if (first == 0) first = last;
    fmt::print(" {:>7} x {:>9.2f}", number, last);
    std::fflush(stdout);
  }
  const bool ok = last <= kLargestPerObject * first;
  fmt::print(" {:>8.1f} {:>11.2f} {:>8.2f} {}\n", static_cast<double>(best.peakBytes) / kMegabyte,
             last / first, kLargestPerObject, ok ? "ok" : "OVER");
  return ok;
}

bool Bench::printScaling() const {
  fmt::print("{:<14} {:<{}} {:>8} {:>11} {:>8}\n", "kind", "number x microseconds each",
             20 * settings_.counts.size() - 1, "peak MB", "last/first", "at most");
  bool kept = true;
  for (const Kind& kind : kKinds) {
    std::vector<std::uint64_t> numbers;
    for (const std::uint64_t count : settings_.counts)
      numbers.push_back(std::max<std::uint64_t>(1, count / kind.objects));
    kept = printKind(kind.name, numbers, 1) && kept;
  }
  std::vector<std::uint64_t> megabytes;
  for (const double size : settings_.sizes)
    if (size >= 1) megabytes.push_back(static_cast<std::uint64_t>(size));
  if (!megabytes.empty())
    kept = printKind("script", megabytes, static_cast<std::uint64_t>(kMegabyte)) && kept;
  fmt::print(
      "One thing many times in a file: processor time of the whole import by the object, start taken off.\n"
      "cubes: each of 100 measures and 100 calculated measures. script: by the MB of one script.\n");
  return kept;
}

bool Bench::measure() {
  fmt::print(
      "Made-up definitions in {}, {}; xmllint, parse-definition and xmla-bridge import in turn,\n"
      "the best of {} runs or more.\n\n",
      folder_.path().string(), folder_.isInMemory() ? "in memory" : "on a disk", settings_.repeat);
  std::sort(settings_.sizes.begin(), settings_.sizes.end());
  rows_[kSmallest] = measureSize(kSmallest);
  for (const double size : settings_.sizes)
    if (!at(size)) rows_[size] = measureSize(size);
  printSizes();
  bool kept = printBounds();
  kept = printDense() && kept;
  kept = printTabular() && kept;
  kept = printFolders() && kept;
  kept = printExports() && kept;
  if (!settings_.counts.empty()) kept = printScaling() && kept;
  return kept;
}

}  // namespace
}  // namespace tav::bench

int main(int count, char** arguments) try {
  tav::bench::Settings settings;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  settings.program = folder / "xmla-bridge";
  settings.parser = folder / "parse-definition";

  CLI::App app("Measures the import beside xmllint on made-up definitions.", "xmla-bench");
  app.add_option("--sizes", settings.sizes, "Sizes of definitions in MB, beside 0.01")
      ->delimiter(',')
      ->check(CLI::Range(.01, 10000.));
  app.add_option("--tabular", settings.tabular, "Sizes of tabular definitions in MB; 0: none")
      ->delimiter(',')
      ->check(CLI::Range(0., 10000.));
  app.add_option("--counts", settings.counts, "Numbers of objects for the last table; 0: no such table")
      ->delimiter(',');
  app.add_option("--repeat", settings.repeat, "Runs at 100 MB; smaller files get more")
      ->check(CLI::Range(1, 1000));
  app.add_option("--program", settings.program, "The xmla-bridge to measure")->check(CLI::ExistingFile);
  app.add_option("--samples", settings.samples,
                 "A folder of definitions to measure too, those of 1 MB or more")
      ->check(CLI::ExistingDirectory);
  std::uint64_t estate = 0;
  app.add_option("--estate", estate, "Instead, import so many definitions into one estate, such as 10000")
      ->check(CLI::Range(10, 1'000'000));
  app.add_flag("--check", settings.check, "End with exit code 1 when a bound is not kept");
  CLI11_PARSE(app, count, arguments);
  std::erase(settings.counts, 0u);
  std::erase(settings.tabular, 0.);

  tav::bench::catchSignals();
  const bool check = settings.check;
  const bool kept = estate > 0 ? tav::bench::measureEstate(settings.program, estate)
                               : tav::bench::Bench(std::move(settings)).measure();
  return kept || !check ? 0 : 1;
} catch (const tav::bench::Interrupted& interrupted) {
  return 128 + interrupted.signal;
} catch (const std::exception& error) {
  fmt::print(stderr, "{}\n", error.what());
  return 1;
}

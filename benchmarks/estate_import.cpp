#include "benchmarks/estate_import.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "benchmarks/definition.h"
#include "benchmarks/process.h"
#include "benchmarks/temporary_folder.h"

namespace tav::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kPortions = 10;
constexpr std::uint64_t kBytes = 30'000;  // of a definition
constexpr double kMegabyte = 1e6;
constexpr std::uintmax_t kRoomForEach = 200'000;  // on the disk, in the database too
constexpr double kLargestGrowth = 1.5;            // of the time for each, from the first portion to the last
constexpr double kLargestPeakGrowth = 1.2;
/// Every made-up definition reads it.
constexpr const char* kColumn = "dbo.[Dim Date].DateKey";

struct Portion {
  double milliseconds = 0;  // of processor time for each definition
  std::uint64_t peakBytes = 0;
};

/// The same definition in all of them, but for its name and the order in which words are drawn.
void writeDefinitions(const fs::path& folder, std::uint64_t first, std::uint64_t count) {
  fs::create_directories(folder);
  for (std::uint64_t i = first; i < first + count; ++i) {
    std::ofstream out(folder / fmt::format("model-{:06}.asdatabase", i), std::ios::binary);
    writeEstate(out, kBytes, i + 1);
    out.close();
    if (!out) throw std::runtime_error("cannot write to " + folder.string());
  }
}

bool isKept(const char* what, double ratio, double bound) {
  const bool kept = ratio <= bound;
  fmt::print("{}: {:.2f} times the first portion's, at most {:.2f}: {}\n", what, ratio, bound,
             kept ? "kept" : "NOT KEPT");
  return kept;
}

}  // namespace

bool measureEstate(const std::string& program, std::uint64_t count) {
  const std::uint64_t each = std::max<std::uint64_t>(count / kPortions, 1);
  const TemporaryFolder folder(each * kPortions * kRoomForEach);
  const std::string database = folder.path() / "estate.db";
  const std::string temporary = folder.path();
  fmt::print("An estate of {} definitions of {} KB, {} at a time{}\n\n", each * kPortions, kBytes / 1000,
             each, folder.isInMemory() ? ", in memory" : "");
  fmt::print("{:>12} {:>10} {:>12} {:>10} {:>12} {:>10}\n", "definitions", "wall s", "ms CPU each", "peak MB",
             "database MB", "impact s");
  std::vector<Portion> portions;
  for (std::uint64_t portion = 0; portion < kPortions; ++portion) {
    const fs::path definitions = folder.path() / fmt::format("definitions-{}", portion);
    writeDefinitions(definitions, portion * each, each);
    const Cost import =
        run({program, "import", definitions, "--estate", database, "--jobs", "2", "--quiet"}, temporary);
    fs::remove_all(definitions);
    const Cost impact = run({program, "impact", database, kColumn, "--format", "list"}, temporary);
    portions.push_back({import.processor * 1000 / static_cast<double>(each), import.peakBytes});
    fmt::print("{:>12} {:>10.1f} {:>12.2f} {:>10.1f} {:>12.1f} {:>10.2f}\n", (portion + 1) * each,
               import.wall, portions.back().milliseconds, static_cast<double>(import.peakBytes) / kMegabyte,
               static_cast<double>(fs::file_size(database)) / kMegabyte, impact.wall);
  }
  fmt::print("\n");
  const bool time = isKept("Time for each definition",
                           portions.back().milliseconds / portions.front().milliseconds, kLargestGrowth);
  const bool memory =
      isKept("Peak memory",
             static_cast<double>(portions.back().peakBytes) / static_cast<double>(portions.front().peakBytes),
             kLargestPeakGrowth);
  return time && memory;
}

}  // namespace tav::bench

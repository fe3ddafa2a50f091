#include "benchmarks/beside_xmllint.h"

#include <fmt/format.h>

#include <cstdio>
#include <string_view>

#include "benchmarks/process.h"

namespace tav::bench {
namespace {

namespace fs = std::filesystem;

constexpr double kMegabyte = 1e6;
constexpr std::uintmax_t kSmallestSample = 1'000'000;
constexpr double kEnough = 1;  // seconds of imports, when they are short

bool isXml(const fs::path& file) {
  const std::string extension = file.extension();
  return extension == ".asdatabase" || extension == ".xmla";
}

std::string percent(double part, double whole) {
  return fmt::format("{:.0f} %", 100 * part / whole);
}

}  // namespace

BesideXmllint::BesideXmllint(Programs programs, fs::path folder, unsigned repeat, Bounds bounds)
    : programs_(std::move(programs)), folder_(std::move(folder)), repeat_(repeat), bounds_(bounds) {}

void BesideXmllint::printHead(const std::string& what) const {
  fmt::print("{:<24} {:>7} {:>9} {:>9} {:>7} {:>7} {:>7}   {:>7} {:>7} {:>7} {:>7}\n", what, "MB",
             "xmllint s", "import s", "ratio", "reading", "details", "at most", "peak MB", "/size",
             "at most");
}

bool BesideXmllint::printFile(const std::string& name, const fs::path& file) const {
  const std::string model = folder_ / "model.xml";
  const std::vector<std::string> import{programs_.import, "import", file, "-o", model, "--quiet", "--json"};
  std::vector<std::string> modelAlone = import;
  modelAlone.emplace_back("--no-details");
  Best xmllint, parse, whole, alone;
  double spent = 0;
  for (unsigned i = 0; i < repeat_ || (i < 4 * repeat_ && spent < kEnough); ++i) {
    xmllint.take(run({"xmllint", "--noout", file}, folder_));
    parse.take(run({programs_.parse, file}, folder_));
    const Cost cost = run(import, folder_);
    whole.take(cost);
    alone.take(run(modelAlone, folder_));
    spent += cost.wall;
  }
  const double megabytes = static_cast<double>(fs::file_size(file)) / kMegabyte;
  const double peak = static_cast<double>(whole.peakBytes) / kMegabyte;
  const double ratio = whole.processor / xmllint.processor;
  const bool kept = ratio <= bounds_.time && peak / megabytes <= bounds_.memory;
  fmt::print(
      "{:<24} {:>7.1f} {:>9.3f} {:>9.3f} {:>7.2f} {:>7} {:>7}   {:>7.2f} {:>7.1f} {:>7.1f} {:>7.1f} {}\n",
      name, megabytes, xmllint.processor, whole.processor, ratio, percent(parse.processor, whole.processor),
      percent(std::max(0., whole.processor - alone.processor), whole.processor), bounds_.time, peak,
      peak / megabytes, bounds_.memory, kept ? "ok" : "OVER");
  std::fflush(stdout);
  return kept;
}

bool BesideXmllint::printSamples(const fs::path& samples) const {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(samples))
    if (entry.is_regular_file() && isXml(entry.path()) && entry.file_size() >= kSmallestSample)
      files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  bool kept = true;
  for (const fs::path& file : files) kept = printFile(file.stem(), file) && kept;
  return kept;
}

}  // namespace tav::bench

// generate-definition SIZE SEED [KIND]: writes a made-up definition to standard output. SIZE is in MB for the
// kinds "database" (0.01 is 10 KB), "tabular" and "script", else a number of objects. The same arguments give
// the same bytes everywhere.

#include <charconv>
#include <cmath>
#include <cstdint>
#include <exception>
#include <iostream>
#include <optional>
#include <string_view>

#include "benchmarks/definition.h"

namespace {

constexpr double kLargest = 1e6;

template <class Number> std::optional<Number> number(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

int usage() {
  std::cerr << "usage: generate-definition SIZE SEED [KIND] > FILE\n"
               "  KIND database (as if not given), tabular or script: SIZE in MB, such as 0.01 or 100\n"
               "  KIND equal-names, attributes, levels, columns, uneven, tables, measures, equal-measures,\n"
               "    references or cubes, or of a tabular definition model-columns, model-measures, "
               "model-partitions,\n"
               "    model-annotations, model-members, model-tables, model-expressions, model-equal-columns,\n"
               "    model-equal-measures, model-equal-members or model-equal-tables: SIZE objects\n";
  return 2;
}

}  // namespace

int main(int count, char** arguments) try {
  if (count < 3 || count > 4) return usage();
  const auto size = number<double>(arguments[1]);
  const auto seed = number<std::uint64_t>(arguments[2]);
  const std::string_view kind = count == 4 ? arguments[3] : "database";
  if (!size || !(*size > 0) || *size > kLargest || !seed) return usage();
  const auto bytes = static_cast<std::uint64_t>(std::llround(*size * 1e6));
  if (kind == "database")
    tav::bench::writeEstate(std::cout, bytes, *seed);
  else if (kind == "tabular")
    tav::bench::writeTabular(std::cout, bytes, *seed);
  else if (kind.starts_with("model-"))
    tav::bench::writeTabularMany(std::cout, kind, static_cast<std::uint64_t>(*size));
  else
    tav::bench::writeMany(std::cout, kind, kind == "script" ? bytes : static_cast<std::uint64_t>(*size));
  if (std::cout.flush()) return 0;
  std::cerr << "the definition could not be written\n";
  return 1;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}

#include "benchmarks/definition.h"

#include <algorithm>

#include "benchmarks/estate_parts.h"

namespace tav::bench {
namespace {

constexpr std::uint64_t kFullArea = 3'000'000;
constexpr Scale kLargestScale = 2000;
constexpr Scale kAround = 100, kStep = 10;
constexpr unsigned kTriedAreas = 3;
constexpr std::uint64_t kNoFit = ~std::uint64_t{0};

// Each part of an area has a seed of its own, so that the three passes over the areas agree.
Random randomOf(std::uint64_t seed, unsigned area, unsigned part) {
  return Random((seed * 4096 + part) * 1000033u + area);
}

/// The area that the cube of that one links to: the one before it; for the first cube the last one, which
/// comes later in the document.
unsigned linkedTo(unsigned area, unsigned areas) {
  return area == 0 ? areas - 1 : area - 1;
}

void writeCubeOf(XmlWriter& to, std::uint64_t seed, unsigned number, unsigned areas, Scale scale) {
  const Area area = planArea(seed, number, scale);
  Random random = randomOf(seed, number, 2);
  if (areas == 1) return writeCube(to, area, nullptr, random, scale);
  const Area linked = planArea(seed, linkedTo(number, areas), scale);
  writeCube(to, area, &linked, random, scale);
}

void writeHead(XmlWriter& to) {
  to.leaf("ID", "Estate");
  to.leaf("Name", "Estate");
  writeStamps(to);
  to.leaf("State", "Unprocessed");
  to.leaf("Language", "1033");
  to.leaf("Collation", "Latin1_General_CI_AS");
}

void writeAreas(XmlWriter& to, std::uint64_t seed, unsigned areas, Scale scale) {
  to.raw("\xEF\xBB\xBF");
  const Element database(to, "Database", rootNamespaces());
  writeHead(to);
  {
    const Element dimensions(to, "Dimensions");
    for (unsigned i = 0; i < areas; ++i) {
      const Area area = planArea(seed, i, scale);
      Random random = randomOf(seed, i, 1);
      for (const Dimension& dimension : area.dimensions) writeDimension(to, area, dimension, random);
    }
  }
  {
    const Element cubes(to, "Cubes");
    for (unsigned i = 0; i < areas; ++i) writeCubeOf(to, seed, i, areas, scale);
  }
  {
    const Element sources(to, "DataSources");
    for (unsigned i = 0; i < areas; ++i) writeDataSource(to, planArea(seed, i, scale));
  }
  const Element views(to, "DataSourceViews");
  for (unsigned i = 0; i < areas; ++i) {
    Random random = randomOf(seed, i, 3);
    writeView(to, planArea(seed, i, scale), random);
  }
}

/// What a definition of `areas` areas comes to at that scale, told from the first few of them.
std::uint64_t estimatedSize(std::uint64_t seed, unsigned areas, Scale scale) {
  const unsigned tried = std::min(areas, kTriedAreas);
  XmlWriter counter(nullptr);
  writeAreas(counter, seed, tried, scale);
  return counter.size() * areas / tried;
}

/// The scale at which a definition of `areas` areas comes nearest to `bytes`.
Scale fittingScale(std::uint64_t seed, unsigned areas, std::uint64_t bytes) {
  Scale low = 1, high = kLargestScale;
  while (low < high) {
    const Scale middle = (low + high) / 2;
    if (estimatedSize(seed, areas, middle) < bytes)
      low = middle + 1;
    else
      high = middle;
  }
  // The size grows in leaps, each with a new dimension or measure group: the scales around may come nearer.
  Scale best = low;
  std::uint64_t bestMiss = kNoFit;
  for (Scale scale = low > kAround ? low - kAround : 1; scale <= low + kAround; scale += kStep) {
    const std::uint64_t size = estimatedSize(seed, areas, scale);
    const std::uint64_t miss = size > bytes ? size - bytes : bytes - size;
    if (miss < bestMiss) bestMiss = miss, best = scale;
  }
  return best;
}

}  // namespace

void writeEstate(std::ostream& out, std::uint64_t bytes, std::uint64_t seed) {
  const unsigned areas = static_cast<unsigned>(std::max<std::uint64_t>(1, bytes / kFullArea));
  XmlWriter to(&out);
  writeAreas(to, seed, areas, fittingScale(seed, areas, bytes));
}

}  // namespace tav::bench

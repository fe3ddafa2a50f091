// What the benchmarks measure must stay the same: figures of two versions, or of two machines, are compared.

#include "benchmarks/definition.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

/// FNV-1a, 64 bits.
std::uint64_t hashOf(const std::string& text) {
  std::uint64_t hash = 0xCBF29CE484222325u;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
  return hash;
}

std::string written(const std::string& kind, std::uint64_t size) {
  std::ostringstream out;
  if (kind == "database")
    tav::bench::writeEstate(out, size, 1);
  else if (kind == "tabular")
    tav::bench::writeTabular(out, size, 1);
  else if (kind.starts_with("model-"))
    tav::bench::writeTabularMany(out, kind, size);
  else
    tav::bench::writeMany(out, kind, size);
  return out.str();
}

struct Golden {
  const char* kind;
  std::uint64_t size;
  std::size_t bytes;
  std::uint64_t hash;
};

constexpr Golden kGolden[] = {
    {"database", 10'000, 12635, 0x4E5CE148D8EEC937u},
    {"database", 300'000, 302088, 0x3EA6BBEFCB5ADBA7u},
    {"equal-names", 3, 6409, 0x92ED8F7DD6F80D0Fu},
    {"attributes", 3, 5480, 0xF5406AB8324B8784u},
    {"uneven", 3, 7856, 0xCE950FC01D39B31Bu},
    {"tables", 3, 5780, 0x658D8BA3421B0051u},
    {"measures", 3, 4518, 0x581FA8C7D8F6DA83u},
    {"equal-measures", 3, 4527, 0x558B020EDF816719u},
    {"references", 30, 5470, 0xBD16112FB1286EE0u},
    {"cubes", 2, 298188, 0x6201116093248AE8u},
    {"script", 10'000, 149858, 0x5402913EDCDACDECu},
    {"tabular", 300'000, 386577, 0xB1B10FECAF1E992Cu},
    {"model-columns", 3, 919, 0x21279634837DD824u},
    {"model-equal-columns", 3, 913, 0x483D4F58A8225108u},
    {"model-measures", 3, 1010, 0x145C088F2C8166F4u},
    {"model-equal-measures", 3, 993, 0x04405EC975DF55BAu},
    {"model-partitions", 3, 1113, 0x62C3D76821FCFD90u},
    {"model-annotations", 3, 954, 0xE965AA426491562Du},
    {"model-members", 3, 763, 0xA476BF524E53B4D6u},
    {"model-equal-members", 3, 769, 0x5897C5489F302A80u},
    {"model-tables", 3, 1519, 0x6E201BBE39B28343u},
    {"model-equal-tables", 3, 1515, 0x57FD9F4ED1C005A7u},
    {"model-expressions", 3, 1096, 0x7E1B4E9D949A8519u},
};

TEST(MadeUpDefinitions, AreTheSameOnEveryMachine) {
  for (const Golden& golden : kGolden) {
    const std::string text = written(golden.kind, golden.size);
    EXPECT_EQ(text.size(), golden.bytes) << golden.kind << ' ' << golden.size;
    EXPECT_EQ(hashOf(text), golden.hash) << golden.kind << ' ' << golden.size;
  }
}

TEST(MadeUpDefinitions, AreAboutAsLargeAsAsked) {
  for (const double size : {15e3, 100e3, 500e3}) {
    const auto bytes = static_cast<double>(written("database", static_cast<std::uint64_t>(size)).size());
    EXPECT_NEAR(bytes, size, size / 4);
  }
  EXPECT_NEAR(static_cast<double>(written("database", 1'000'000).size()), 1e6, 1e6 / 20);
}

TEST(MadeUpDefinitions, OfAnUnknownKindAreNone) {
  std::ostringstream out;
  EXPECT_THROW(tav::bench::writeMany(out, "perspectives", 1), std::invalid_argument);
  EXPECT_THROW(tav::bench::writeTabularMany(out, "model-perspectives", 1), std::invalid_argument);
  EXPECT_EQ(out.str(), "");
}

}  // namespace

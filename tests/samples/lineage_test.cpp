#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/checked_import.h"
#include "tests/support/lineage_text.h"

namespace {

/// The lineage of what the cubes of a sample calculate, each folder under its path.
std::string showLineage(const std::string& sample) {
  const tav::test::Imported imported = tav::test::importFile(std::filesystem::path(SAMPLES) / sample);
  std::string text = imported.error;
  if (!imported.model) return text;
  for (const TAVPackage* cube : tav::test::cubePackages(*imported.model))
    for (const char* name : {"Calculated Measures", "KPIs"})
      if (const TAVPackage* folder = cube->getChildPackage(name))
        text += folder->getPath(true).str() + "\n" + tav::test::lineageText(*folder);
  return text;
}

TEST(Samples, CalculateFromTheSourcesThatReadersFound) {
  tav::test::checkCorpus("samples/lineage.txt", showLineage);
}

}  // namespace

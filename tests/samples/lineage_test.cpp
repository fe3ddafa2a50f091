#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/checked_import.h"
#include "tests/support/lineage_text.h"

namespace {

TEST(Samples, CalculateFromTheSourcesThatReadersFound) {
  tav::test::checkCorpus("samples/lineage.txt", [](const std::string& sample) {
    const tav::test::Imported imported = tav::test::importFile(std::filesystem::path(SAMPLES) / sample);
    return imported.model ? tav::test::lineageText(*imported.model) : imported.error;
  });
}

}  // namespace

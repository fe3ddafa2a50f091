#include <gtest/gtest.h>

#include "framework/std/dotted_name.h"
#include "lineage/database_address.h"
#include "tests/support/corpus.h"

namespace {

TEST(Lineage, Addresses) {
  tav::test::checkCorpus("lineage/addresses.txt", [](const std::string& text) {
    const tav::DatabaseAddress address =
        tav::parseDatabaseAddress({"My Source", text, "MICROSOFT_SQL_SERVER", {}, {}});
    return address.server + " | " + address.database + " | " + address.defaultSchema;
  });
}

TEST(Lineage, DottedNames) {
  tav::test::checkCorpus("lineage/dotted_names.txt", [](const std::string& text) {
    std::string shown;
    for (const std::string& part : tav::splitDottedName(text)) shown += "<" + part + ">";
    return shown;
  });
}

}  // namespace

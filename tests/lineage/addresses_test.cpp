#include <gtest/gtest.h>

#include "framework/std/dotted_name.h"
#include "framework/std/exception.h"
#include "framework/std/text.h"
#include "lineage/address_map.h"
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

/// Rules, a line `--`, and connection strings, each behind the schema of a table: the table's names.
std::string mapped(const std::string& text) {
  const std::size_t end = text.find("--\n");
  std::string shown;
  try {
    const tav::AddressMap map = tav::AddressMap::parse(text.substr(0, end), "map");
    for (const std::string_view line : tav::linesOf(std::string_view(text).substr(end + 3))) {
      const std::size_t mark = line.find(' ');
      std::string schema(line.substr(0, mark));
      tav::DatabaseAddress address =
          tav::parseDatabaseAddress({"My Source", line.substr(mark + 1), "MICROSOFT_SQL_SERVER", {}, {}});
      map.apply(address, schema);
      shown.append(shown.empty() ? "" : "\n").append(address.server).append(" ");
      shown.append(tav::catalogueName(address, schema, "T")).append(address.named ? "" : " (not named)");
    }
  } catch (const TAVException& error) {
    return std::string(error.getMessage());
  }
  return shown;
}

TEST(Lineage, AddressMaps) {
  tav::test::checkCorpus("lineage/maps.txt", mapped);
}

TEST(Lineage, DottedNames) {
  tav::test::checkCorpus("lineage/dotted_names.txt", [](const std::string& text) {
    std::string shown;
    for (const std::string& part : tav::splitDottedName(text)) shown += "<" + part + ">";
    return shown;
  });
}

}  // namespace

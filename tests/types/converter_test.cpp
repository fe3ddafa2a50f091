#include <gtest/gtest.h>

#include <sstream>

#include "framework/model/model.h"
#include "framework/types/data_type_converter.h"
#include "tests/support/corpus.h"

namespace {

using Names = TAVDataTypeConstants;

class CountingLog : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override { texts += event.getMessageId().str() + "\n"; }
  std::string texts;
};

std::string convertLines(const std::string& input) {
  const TAVDataTypeConverter converter(nullptr, TAVDataStoreVersion(Names::DATASTORE_MICROSOFT_DSV, 9, 0, 0),
                                       Names::TOOL_MICROSOFT_DSV);
  std::istringstream lines(input);
  std::string result;
  for (std::string line; std::getline(lines, line);)
    (result += result.empty() ? "" : "\n") += converter.getImportTypeName(line == "\\" ? "" : line);
  return result;
}

TEST(DataTypeConverter, Corpus) {
  tav::test::checkCorpus("types/converter.txt", convertLines);
}

TEST(DataTypeConverter, EveryNameOfAStoreLeadsToATypeOfTheFramework) {
  for (const tav::TypeNameRow& row :
       TAVDataStoreVersion(Names::DATASTORE_MICROSOFT_DSV, 10, 0, 0).getTypeNames())
    EXPECT_TRUE(tav::isTypeName(row.name)) << row.native;
}

TEST(DataTypeConverter, AnUnknownToolIsOneWarningAndLeavesTheStoresOwnNames) {
  CountingLog log;
  const TAVDataTypeConverter converter(&log, TAVDataStoreVersion(Names::DATASTORE_MICROSOFT_DSV, 9, 0, 0),
                                       "LOOM");
  EXPECT_EQ(converter.getImportTypeName("WChar"), "VARCHAR");
  EXPECT_EQ(converter.getImportTypeName("xs:string"), "undefined");
  EXPECT_EQ(log.texts, "TAVTYPES_W0001\n");
}

TEST(DataStoreVersion, AToolReadsItsOwnVersionAndEarlierOnes) {
  const TAVDataStoreVersion version(Names::DATASTORE_ORACLE, 11, 2, 0);
  EXPECT_TRUE(version.isSupportedByToolVersion(11, 2, 0));
  EXPECT_TRUE(version.isSupportedByToolVersion(12, 0, 0));
  EXPECT_FALSE(version.isSupportedByToolVersion(11, 1, 9));
}

TEST(DataStoreVersion, AConnectionKeepsItsOwnCopy) {
  auto connection = tav::make<TAVStoreConnection>("c");
  {
    const TAVDataStoreVersion version(Names::DATASTORE_ORACLE, 11, 0, 3);
    setDataStore(connection.get(), &version);
  }
  EXPECT_EQ(connection->dataStore, (TAVDataStore{"ORACLE", 11, 0, 3}));
}

}  // namespace

#include <gtest/gtest.h>

#include "bridge/import.h"
#include "tests/support/corpus.h"
#include "tests/support/model_text.h"

namespace {

/// Keeps the messages as lines "LEVEL identifier text".
class Messages : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    lines += std::string(tav::severityName(event.getSeverity())) + " " + event.getMessageId().str() + " " +
             event.getText().str() + "\n";
  }
  std::string lines;
};

std::string importText(const std::string& document, Messages& messages) {
  const tav::test::TemporaryFolder folder;
  const TAVFile file{TAVString(folder.write("definition.xmla", document))};
  try {
    const tav::Owned<TAVStoreModel> model(execAsImport("test", file, &messages));
    return tav::test::modelText(*model);
  } catch (const TAVException& failure) {
    std::string message = failure.getMessage().str();
    const std::string path = file.getPath().str();
    if (const std::size_t at = message.find(path); at != std::string::npos)
      message.replace(at, path.size(), "FILE");
    return message;
  }
}

std::string importText(const std::string& document) {
  Messages messages;
  return importText(document, messages);
}

TEST(Import, FindsTheDatabaseInEveryShapeOfDocument) {
  tav::test::checkCorpus("reader/documents.txt", [](const std::string& input) { return importText(input); });
}

TEST(Import, ReadsDataSourcesAndViews) {
  tav::test::checkCorpus("reader/sources.txt", [](const std::string& input) { return importText(input); });
}

TEST(Import, ReadsDimensionsWithTheirLineage) {
  tav::test::checkCorpus("reader/dimensions.txt", [](const std::string& input) { return importText(input); });
}

TEST(Import, TellsItsProgressInOrder) {
  Messages messages;
  importText(
      "<Database><Name>Sales</Name><Dimensions><Dimension><Name>Date</Name></Dimension><Other/>"
      "<Dimension><Name>Customer</Name></Dimension></Dimensions></Database>",
      messages);
  EXPECT_EQ(messages.lines,
            "STATUS QVT_SSXMLA_S0007 Importing model '' ...\n"
            "STATUS QVT_SSXMLA_S0012 Importing data source views ...\n"
            "STATUS QVT_SSXMLA_S0008 Importing dimensions...\n"
            "STATUS QVT_SSXMLA_S0009 Importing dimension 'Date' ...\n"
            "STATUS QVT_SSXMLA_S0009 Importing dimension 'Customer' ...\n"
            "STATUS QVT_SSXMLA_S0010 Importing cubes ...\n");
}

TEST(Import, TheThreeShapesOfADatabaseGiveOneModel) {
  const std::string body =
      "<ID>I</ID><Name>N</Name><Description>D</Description>"
      "<Dimensions><Dimension><ID>d</ID><Name>Date</Name></Dimension></Dimensions>";
  const std::string built = importText("<Database>" + body + "</Database>");
  const std::string database = "<ObjectDefinition><Database>" + body + "</Database></ObjectDefinition>";
  EXPECT_EQ(importText("<Create>" + database + "</Create>"), built);
  EXPECT_EQ(importText("<Batch><Alter>" + database + "</Alter></Batch>"), built);
  EXPECT_NE(built.find("Dimension \"Date\""), std::string::npos);
}

TEST(Import, OfTheSameFileTwiceGivesEqualModels) {
  const std::string document =
      tav::test::readFile(tav::test::testFile("../examples/murmeltal-huts.asdatabase"));
  EXPECT_EQ(importText(document), importText(document));
}

}  // namespace

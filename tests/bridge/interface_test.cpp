#include "bridge/interface.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "bridge/import.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "tests/support/corpus.h"

namespace {

class SilentLog : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

TAVMicrosoftSqlServerXMLAImportDllInterface& plugin() {
  return *getTAVMicrosoftSqlServerXMLAImportInterface();
}

TAVOptionList optionsFor(const std::string& file) {
  TAVOptionList options;
  plugin().getOptionList(options);
  options.get("BP_FILE")->setValue(file);
  return options;
}

bool run(const std::string& input, const std::string& output) {
  TAVOptionList options = optionsFor(input);
  TAVFile file{TAVString(output)};
  SilentLog log;
  return plugin().run("MicrosoftSqlServerXMLAImport", file, options, log);
}

std::string messageOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const TAVException& failure) {
    return failure.getMessage().str();
  }
  return "";
}

TEST(Interface, IsOneObjectWithOneVersion) {
  EXPECT_EQ(getTAVMicrosoftSqlServerXMLAImportInterface(), getTAVMicrosoftSqlServerXMLAImportInterface());
  const TAVString& version = plugin().getBuildVersion();
  EXPECT_TRUE(version.startsWith("10.0.1 - 20", true)) << version.c_str();
  EXPECT_TRUE(version.endsWith(" PST", true) || version.endsWith(" PDT", true)) << version.c_str();
  EXPECT_EQ(&version, &plugin().getBuildVersion());
}

TEST(Interface, DescribesItselfUnderAnyIdentifier) {
  TAVBridgeSpecification own, foreign;
  plugin().getSpecification("MicrosoftSqlServerXMLAImport", own);
  plugin().getSpecification("SomethingElse", foreign);
  for (const TAVBridgeSpecification& specification : {own, foreign}) {
    EXPECT_EQ(specification.getVendorName(), "Microsoft");
    EXPECT_EQ(specification.getToolName(), "SQL Server Analysis Services");
    EXPECT_TRUE(specification.getDescription().startsWith("The Metadata for the Microsoft SQL Server", true));
    EXPECT_TRUE(
        specification.getDescription().endsWith("'Script Database as->CREATE To -> File...'.\n", true));
    EXPECT_EQ(specification.getBuildVersion(), plugin().getBuildVersion());
  }
}

TEST(Interface, LeavesExactlyItsOwnOptionInAList) {
  TAVOptionList options;
  options.add({"X", "X", "", OptionType::text, ""});
  plugin().getOptionList(options);
  ASSERT_EQ(options.getCount(), 1);
  const TAVOption& option = *options.begin();
  EXPECT_EQ(&option, options.get("BP_FILE"));
  EXPECT_EQ(option.getName(), "File");
  EXPECT_EQ(option.getValue(), "");
  EXPECT_TRUE(option.isMandatory());
  EXPECT_EQ(option.getExtensions(), (std::vector<TAVString>{"xmla", "asdatabase"}));
}

TEST(Interface, DoesNotBrowse) {
  TAVOptionList options;
  SilentLog log;
  const std::string message = messageOf([&] { plugin().browse("", "", options, log); });
  EXPECT_NE(message.find("'MicrosoftSqlServerXMLAImport'"), std::string::npos) << message;
  EXPECT_NE(message.find("'browse'"), std::string::npos) << message;
}

TEST(Import, GoesByTheFirstCharacter) {
  setenv("XMLA_BRIDGE_JAVA", "/no/such/java", 1);  // a tabular definition gets as far as looking for Java
  tav::test::checkCorpus("bridge/scan.txt", [](const std::string& input) -> std::string {
    constexpr std::string_view kMany = "REPEAT 5000 BLANKS";
    const tav::test::TemporaryFolder folder;
    std::string content = tav::test::unescape(input);
    if (content.starts_with(kMany)) content.replace(0, kMany.size(), std::string(5000, ' '));
    const std::string path = folder.write("file", content);
    SilentLog log;
    const std::string message = messageOf(
        [&] { const tav::Owned<TAVStoreModel> model(execAsImport("", TAVFile{TAVString(path)}, &log)); });
    return message.starts_with("[TAVJAVA_") ? "tabular" : "XML";
  });
}

TEST(Run, SavesAModelUnderItsNameOrElseUndefined) {
  const tav::test::TemporaryFolder folder;
  const std::string output = (folder.path() / "m.xml").string();
  EXPECT_TRUE(run(folder.write("a.xmla", "<Database><Name>Sales</Name></Database>"), output));
  EXPECT_EQ(tav::loadModel(output)->getName(), "Sales");
  EXPECT_TRUE(run(folder.write("b.xmla", "<Nothing/>"), output));
  const tav::Owned<TAVModel> model = tav::loadModel(output);
  EXPECT_EQ(model->getName(), "Undefined");
  EXPECT_EQ(model->nativeType, "AS Database");
  ASSERT_EQ(model->metadataOrigins.getCount(), 1);
  EXPECT_EQ(model->metadataOrigins.first()->code, 315);
  EXPECT_EQ(model->metadataOrigins.first()->path, (folder.path() / "b.xmla").string());
}

TEST(Run, ThatFailsLeavesTheOutputAsItWas) {
  const tav::test::TemporaryFolder folder;
  const std::string output = folder.write("m.xml", "before");
  EXPECT_EQ(messageOf([&] { run("/no/such.xmla", output); }),
            "[QVT_SSXMLA_F0002] Unable to open '/no/such.xmla'.");
  EXPECT_NE(messageOf([&] { run(folder.write("a.xmla", "<Database><Name>"), output); }), "");
  EXPECT_NE(messageOf([&] { run(folder.write("a.bim", "{}"), output); }), "");
  EXPECT_EQ(tav::test::readFile(output), "before");
}

TEST(Run, ShowsTheModelToTheHostWhichMayKeepItFromBeingSaved) {
  class Observer : public tav::HostObserver {
   public:
    bool onModel(const TAVStoreModel& model) override {
      seen = model.getName();
      if (failing) tav::fail("TEST", "seen enough");
      return false;
    }
    TAVString seen;
    bool failing = false;
  };
  const tav::test::TemporaryFolder folder;
  const std::string input = folder.write("a.xmla", "<Database><Name>Sales</Name></Database>");
  const std::string output = (folder.path() / "m.xml").string();
  {
    Observer observer;
    EXPECT_TRUE(run(input, output));
    EXPECT_EQ(observer.seen, "Sales");
    observer.failing = true;
    EXPECT_EQ(messageOf([&] { run(input, output); }), "[TEST] seen enough");
  }
  EXPECT_FALSE(std::filesystem::exists(output));
  EXPECT_TRUE(run(input, output));
  EXPECT_TRUE(std::filesystem::exists(output));
}

TEST(Run, TellsTheHostOfADatabaseHoweverLittleItHolds) {
  class Observer : public tav::HostObserver {
   public:
    void onDatabase() override { defined = true; }
    bool onModel(const TAVStoreModel& /*model*/) override { return false; }
    bool defined = false;
  };
  const tav::test::TemporaryFolder folder;
  const auto tells = [&](const std::string& document) {
    Observer observer;
    EXPECT_TRUE(run(folder.write("a.xmla", document), (folder.path() / "m.xml").string())) << document;
    return observer.defined;
  };
  for (const char* database : {"<Database><Name>Sales</Name></Database>", "<Database/>"}) {
    const std::string definition = "<ObjectDefinition>" + std::string(database) + "</ObjectDefinition>";
    EXPECT_TRUE(tells(database));
    EXPECT_TRUE(tells("<Create>" + definition + "</Create>"));
    EXPECT_TRUE(tells("<Batch><Alter>" + definition + "</Alter></Batch>"));
    EXPECT_FALSE(tells("<Alter>" + definition + "</Alter>"));
    EXPECT_FALSE(tells("<Batch><Create>" + definition + "</Create></Batch>"));
  }
  EXPECT_FALSE(tells("<Create><ObjectDefinition><Trace/></ObjectDefinition></Create>"));
  EXPECT_FALSE(tells("<Other><Name>Sales</Name></Other>"));
}

}  // namespace

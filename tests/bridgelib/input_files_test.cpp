#include <gtest/gtest.h>
#include <sys/stat.h>

#include "framework/bridgelib/input_files.h"
#include "tests/support/corpus.h"

namespace {

class TextLog : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    text += std::string(tav::severityName(event.getSeverity())) + " " + event.getMessageId().str() + " " +
            event.getText().str() + "\n";
  }
  std::string text;
};

class InputFiles : public testing::Test {
 protected:
  InputFiles() {
    TAVOption option("BP_FILE", "File", "", OptionType::file, "");
    option.setMandatory(true);
    option.addExtension("xmla");
    option.addExtension("asdatabase");
    option_ = &options_.add(option);
  }

  /// What the test says of `path`: yes or no, and its messages, without the folder.
  std::string say(const std::string& path, bool acceptFolders = false) {
    TextLog log;
    option_->setValue(path);
    const bool good = testRequiredInputFiles(options_, log, acceptFolders);
    std::string text = (good ? "yes\n" : "no\n") + log.text;
    for (std::size_t at = text.find(folder()); at != std::string::npos; at = text.find(folder()))
      text.replace(at, folder().size(), "F");
    return text;
  }
  [[nodiscard]] std::string folder() const { return folder_.path().string(); }

  tav::test::TemporaryFolder folder_;
  TAVOptionList options_;
  TAVOption* option_;
};

TEST_F(InputFiles, AListedExtensionInAnyLetterCaseIsSilent) {
  EXPECT_EQ(say(folder_.write("a.xmla", "x")), "yes\n");
  EXPECT_EQ(say(folder_.write("a.AsDatabase", "x")), "yes\n");
}

TEST_F(InputFiles, AnotherExtensionIsAWarning) {
  EXPECT_EQ(say(folder_.write("a.xmla.bak", "x")),
            "yes\nWARNING TAVBRIDGE_W0018 The name of the file 'F/a.xmla.bak' ends in none of the usual "
            "extensions: xmla, asdatabase.\n");
  EXPECT_EQ(say(folder_.write("xmla", "x")),
            "yes\nWARNING TAVBRIDGE_W0018 The name of the file 'F/xmla' ends in none of the usual "
            "extensions: xmla, asdatabase.\n");
}

TEST_F(InputFiles, WhatCannotBeReadIsAnError) {
  EXPECT_EQ(say(""), "no\nERROR TAVBRIDGE_E0012 No file is given for the option 'File'.\n");
  EXPECT_EQ(say(folder() + "/no.xmla"), "no\nERROR TAVBRIDGE_E0013 The file 'F/no.xmla' does not exist.\n");
  EXPECT_EQ(say(folder_.write("e.xmla", "")), "no\nERROR TAVBRIDGE_E0017 The file 'F/e.xmla' is empty.\n");
  const std::string pipe = folder() + "/p.xmla";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(say(pipe), "no\nERROR TAVBRIDGE_E0015 'F/p.xmla' is no regular file.\n");
  EXPECT_EQ(say("/" + std::string(300, 'n')), "no\nERROR TAVBRIDGE_E0016 The file '/" +
                                                  std::string(300, 'n') +
                                                  "' cannot be read: File name too long.\n");
}

TEST_F(InputFiles, AFolderIsAnErrorUnlessFoldersWillDo) {
  EXPECT_EQ(say(folder()), "no\nERROR TAVBRIDGE_E0014 'F' is a folder, not a file.\n");
  EXPECT_EQ(say(folder(), true), "yes\n");
}

TEST_F(InputFiles, OnlyFilesForReadingAreTested) {
  options_.add(TAVOption("TEXT", "Text", "", OptionType::text, "no such file"));
  options_.add(TAVOption("OUT", "Output", "", OptionType::file, "no such file")).setOpenMode(OpenMode::write);
  options_.add(TAVOption("MORE", "More", "", OptionType::file, ""));
  EXPECT_EQ(say(folder_.write("a.xmla", "x")), "yes\n");
}

}  // namespace

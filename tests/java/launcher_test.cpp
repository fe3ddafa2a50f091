#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "framework/java/java_bridge.h"
#include "framework/std/exception.h"
#include "tests/java/leftovers.h"
#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

class Recorder : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    constexpr std::int32_t kMost = 200;
    const TAVString& text = event.getText();
    shown +=
        std::string(tav::severityName(event.getSeverity())) + "|" + event.getMessageId().str() + "|" +
        (text.length() > kMost ? text.left(20).str() + "... (" + std::to_string(text.length()) + " bytes)"
                               : tav::test::escape(text)) +
        "\n";
  }
  std::string shown;
};

// The options of Java itself depend on the machine: they go into a variable, and the importer's are $1 to $5.
constexpr std::string_view kJavaOptions =
    "#!/bin/sh\nwhile [ \"$1\" != -cp ]; do java_options=\"$java_options $1\"; shift; done\n";

/// A folder with a program that plays Java.
class Place {
 public:
  explicit Place(const std::string& script) {
    for (const char* name : {"java/bin", "out", "tmp"}) fs::create_directories(folder_.path() / name);
    const std::string java = folder_.write("java/bin/java", std::string(kJavaOptions) + script);
    fs::permissions(java, fs::perms::owner_all);
    static_cast<void>(folder_.write("java/release", "JAVA_VERSION=\"17.0.1\"\n"));
    setenv("XMLA_BRIDGE_JAVA", java.c_str(), 1);
    setenv("TMPDIR", (folder_.path() / "tmp").c_str(), 1);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() {
    unsetenv("XMLA_BRIDGE_JAVA");
    unsetenv("TMPDIR");
  }

  /// Imports a file: the messages, and how it ended.
  std::string import(const std::string& input) {
    TAVOptionList options;
    options.add({"BP_FILE", "File", "", OptionType::file, ""}).setValue(TAVString(input));
    Recorder log;
    TAVJavaBridge bridge("org.Main", "a.jar:b c.jar", &log, TAVJavaExe::JAVA_VERSION_6);
    std::string end = "done";
    try {
      bridge.javaImport(TAVFile((folder_.path() / "out/main.xml").string()), options, nullptr);
    } catch (const TAVException& failure) {
      end = tav::test::escape(failure.getMessage());
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was not collected";
    EXPECT_EQ(tav::test::leftovers(folder_.path(), folder_.path() / "tmp"), "");
    return shorten(log.shown + end);
  }

  [[nodiscard]] const tav::test::TemporaryFolder& folder() const { return folder_; }

 private:
  [[nodiscard]] std::string shorten(const std::string& text) const {
    return TAVString(text).replaceAll(folder_.path().string(), "DIR").str();
  }

  tav::test::TemporaryFolder folder_;
};

TEST(Launcher, Corpus) {
  tav::test::checkCorpus("java/launcher.txt", [](const std::string& script) {
    Place place(script);
    return place.import((place.folder().path() / "model.bim").string());
  });
}

TEST(Launcher, AnArchiveOfClassesBesideTheFirstJarIsUsed) {
  const Place place("printf 'INFO\\tJAVA\\t%s\\n' \"${java_options#*GC }\"; touch \"$5\"");
  const auto import = [&](const char* jars) {
    Recorder log;
    const TAVString classPath = TAVString(jars).replaceAll("DIR", place.folder().path().string());
    TAVJavaBridge("org.Main", classPath, &log, TAVJavaExe::JAVA_VERSION_6)
        .javaImport(TAVFile((place.folder().path() / "out/main.xml").string()), {}, nullptr);
    return TAVString(log.shown).replaceAll(place.folder().path().string(), "DIR").str();
  };
  static_cast<void>(place.folder().write("b.jsa", ""));
  EXPECT_EQ(import("DIR/a.jar:DIR/b.jar").find("jsa"), std::string::npos);
  static_cast<void>(place.folder().write("a.jsa", ""));
  EXPECT_EQ(import("DIR/a.jar:DIR/b.jar"),
            "INFO|JAVA|-XX:SharedArchiveFile=DIR/a.jsa -Xshare:auto -Xlog:disable -Xlog:all=error:stderr\n");
  setenv("JDK_JAVA_OPTIONS", "-Xlog:gc", 1);
  EXPECT_EQ(import("DIR/a.jar"), "INFO|JAVA|-XX:SharedArchiveFile=DIR/a.jsa -Xshare:auto\n");
  unsetenv("JDK_JAVA_OPTIONS");
}

TEST(Launcher, AFileOfAnyNameReachesTheImporter) {
  // It reads the file as the option names it, and fails as an importer does.
  const std::string script = R"SH(
file=$(printf '%b_' "$(cut -f 2- "$4")"); file=${file%_}
printf 'STATUS\tX\t%s\n' "$(printf %s "$(cat "$file") from $file" | tr '\n' '~')"
printf '[BAD] %s:1:2: it is bad\n' "$(printf %s "$file" | tr '\n' '~')" >&2
exit 1)SH";
  tav::test::checkCorpus("java/names.txt", [&](const std::string& name) {
    Place place(script);
    return place.import(place.folder().write(tav::test::unescape(name), "text"));
  });
}

TEST(Launcher, AFailingLogEndsTheImporter) {
  class Failing : public TAVLog {
    void logEvent(const TAVLogEvent& event) override { tav::fail("TEST", event.getText()); }
  };
  const Place place("echo 'STATUS\tX\tbegun'; sleep 1000");
  Failing log;
  TAVJavaBridge bridge("org.Main", "a.jar", &log, TAVJavaExe::JAVA_VERSION_6);
  EXPECT_THROW(bridge.javaImport(TAVFile("main.xml"), {}, nullptr), TAVException);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(tav::test::leftovers(place.folder().path(), place.folder().path() / "tmp"), "");
}

TEST(Launcher, IsNotStartedWithoutAnArchive) {
  // Java would take an empty class path for the current folder, and run whatever stands there.
  const Place place("echo started >&2");
  TAVJavaBridge bridge("org.Main", "", nullptr, TAVJavaExe::JAVA_VERSION_6);
  try {
    bridge.javaImport(TAVFile("main.xml"), {}, nullptr);
    FAIL();
  } catch (const TAVException& failure) {
    EXPECT_TRUE(failure.getMessage().startsWith("[TAVJAVA_F0004] ", true)) << failure.what();
  }
}

}  // namespace

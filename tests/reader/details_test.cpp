#include <gtest/gtest.h>

#include "bridge/import.h"
#include "framework/modelbridge/host_observer.h"
#include "tests/support/corpus.h"
#include "tests/support/details_text.h"
#include "tests/support/timing.h"

namespace {

class Silent : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

class DetailsObserver : public tav::HostObserver {
 public:
  bool wantsDetails() override { return true; }
};

std::string replaced(std::string text, std::string_view place, std::string_view content) {
  return text.replace(text.find(place), place.size(), content);
}

/// The text of the details of a document.
std::string detailsOf(const std::string& document) {
  const tav::test::TemporaryFolder folder;
  const DetailsObserver observer;
  Silent silent;
  const TAVFile file{TAVString(folder.write("definition.xmla", document))};
  const tav::Owned<TAVStoreModel> model(execAsImport("test", file, &silent));
  return observer.details() ? tav::test::detailsText(*observer.details()) : "no details";
}

/// What the shared database says with these parts beyond what it says without them.
std::string showDetails(const std::string& parts) {
  static const std::string database = tav::test::readFile(tav::test::testFile("reader/details.xmla"));
  const std::string without = detailsOf(replaced(database, "PARTS", ""));
  const std::string with = detailsOf(replaced(database, "PARTS", parts));
  EXPECT_TRUE(with.starts_with(without)) << with;
  return with.substr(std::min(with.size(), without.size()));
}

TEST(Details, SayWhatTheModelLeavesOut) {
  tav::test::checkCorpus("reader/details.txt", showDetails);
}

TEST(Details, AnnotationsOfManyPartsCostWhatTheyAre) {
  const auto import = [](std::size_t count) {
    std::string parts = "<Annotations><Annotation>";
    for (std::size_t i = 0; i < count; ++i) parts += "<a/>";
    for (std::size_t i = 0; i < count; ++i) parts += "<Value/>";
    const std::string document = "<Database>" + parts + "</Annotation></Annotations></Database>";
    return [document] { return tav::test::secondsOf([&] { detailsOf(document); }); };
  };
  EXPECT_TRUE(tav::test::growsAtMost(import(10'000), import(40'000), 5.0));
}

}  // namespace

// Definitions of which an estate is made: its rows answer as the documents of its models do.

#include <cstdint>
#include <memory>

#include "bridge/import.h"
#include "framework/details/detailed_model.h"
#include "framework/model/owned.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/std/exception.h"
#include "fuzz/require.h"
#include "lineage/joined_search.h"
#include "tests/support/estate_answers.h"
#include "tests/support/temporary_folder.h"

using tav::fuzz::require;

namespace {

constexpr tav::JoinedId kAsked = 6;  // nodes of the estate

struct NoLog : TAVLog {
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

struct Observer : tav::HostObserver {
  bool wantsDetails() override { return true; }
};

void importInto(const std::string& estate, const std::filesystem::path& file) {
  NoLog log;
  const Observer observer;
  try {
    const tav::Owned<TAVStoreModel> model(
        execAsImport("fuzz", TAVFile(TAVString(file.string())), &log, false));
    tav::importIntoEstate(estate, {file.string(), file.filename().string(), "fuzz"},
                          {*model, observer.details()}, {tav::kStateOk, false, {}, {}});
  } catch (const TAVException& failure) {
    require(failure.getMessage().startsWith("[", true), failure.what());
  }
}

void compareAnswers(const std::string& estate) {
  const tav::test::EstateDocuments documents(estate);
  const tav::JoinedNames names(documents.joined());
  const tav::JoinedId step = documents.joined().size() / kAsked + 1;
  for (tav::JoinedId id = 0; id < documents.joined().size(); id += step) {
    for (const auto direction : {tav::LineageDirection::upstream, tav::LineageDirection::downstream}) {
      const std::string name = names.nameOf(id);
      require(documents.answer(name, {direction}) == documents.answerOfRows(name, {direction}),
              "rows answer otherwise than documents");
    }
  }
}

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tav::test::TemporaryFolder folder;
  const tav::test::TemporaryFolder place;
  const std::string estate = (place.path() / "estate.db").string();
  folder.writeFiles({reinterpret_cast<const char*>(data), size});
  tav::makeEstate(estate);
  std::error_code ignored;
  for (const auto& file : std::filesystem::directory_iterator(folder.path(), ignored))
    if (file.is_regular_file()) importInto(estate, file.path());
  compareAnswers(estate);
  return 0;
}

// Any bytes are a database of models that answers, or gives one message why not.

#include <cstdint>

#include "exports/estate_lineage.h"
#include "framework/std/exception.h"
#include "fuzz/require.h"
#include "tests/support/temporary_folder.h"

using tav::fuzz::require;

namespace {

template <class Question> void ask(Question question) {
  try {
    question();
  } catch (const TAVException& failure) {
    require(failure.getMessage().startsWith("[", true), failure.what());
  }
}

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tav::test::TemporaryFolder folder;
  const std::string estate = folder.write("estate.db", {reinterpret_cast<const char*>(data), size});
  if (!tav::isEstate(estate)) return 0;
  ask([&] { tav::addressRulesOf(estate); });
  ask([&] { tav::changesBetween(estate, {"2000-01-01T00:00:00Z", "2100-01-01T00:00:00Z"}); });
  ask([&] {
    tav::AskedModels asked{tav::modelsOf(estate), {}};
    for (const tav::EstateModel& model : asked.models) {
      asked.names.push_back(std::to_string(model.id));
      if (model.version) ask([&] { tav::documentOf(estate, model.source, *model.version); });
    }
    const tav::EstateLineage lineage(estate, asked);
    for (const char* name : {"Amount", "x"}) ask([&] { lineage.ask(name, {}); });
  });
  return 0;
}

// Any bytes are a saved model that keeps the laws, or one exception that names the document.

#include <cstdint>

#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "fuzz/require.h"
#include "tests/support/model_laws.h"

using tav::fuzz::require;

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto [model, details] =
        tav::loadSavedModelText({reinterpret_cast<const char*>(data), size}, "fuzz");
    const std::string broken = tav::test::brokenLaw({*model, details.get()});
    require(broken.empty(), broken.c_str());
  } catch (const TAVException& failure) {
    const TAVString& message = failure.getMessage();
    require(
        message.startsWith("[TAVDOM_F0001] fuzz:", true) || message.startsWith("[TAVXML_F0002] fuzz:", true),
        failure.what());
  }
  return 0;
}

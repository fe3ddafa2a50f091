// Any bytes are an expression of MDX: a sound tree, and the references that it gives are found behind a fault
// too.

#include "fuzz/expression_laws.h"

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tav::fuzz::checkExpression({reinterpret_cast<const char*>(data), size}, tav::ExpressionLanguage::mdx);
  return 0;
}

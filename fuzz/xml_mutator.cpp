// Bytes alone seldom give a document that parses. Half of the time this mutator moves whole elements of one
// that does.

#include <algorithm>
#include <cstdint>

#include "framework/dom/dom.h"
#include "framework/std/exception.h"
#include "tests/support/damage.h"

// libFuzzer gives the names.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t capacity);

namespace {

bool isPlainDocument(std::string_view text) {
  if (text.find("<!") != text.npos || text.find("<?") != text.npos || !text.starts_with('<')) return false;
  try {
    TAVDOM(nullptr).parseText(text, "mutated");
    return true;
  } catch (const TAVException&) {
    return false;
  }
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t capacity,
                                               unsigned seed) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (seed % 2 == 0 || !isPlainDocument(text)) return LLVMFuzzerMutate(data, size, capacity);
  const std::string damaged = tav::test::Damage(seed).elements(std::string(text));
  if (damaged.empty() || damaged.size() > capacity) return LLVMFuzzerMutate(data, size, capacity);
  std::copy(damaged.begin(), damaged.end(), data);
  return damaged.size();
}

#pragma once

#include <cstdio>
#include <cstdlib>

namespace tav::fuzz {

/// Ends the process, which a fuzzer takes for a fault, unless the law holds.
inline void require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", law);
  std::abort();
}

}  // namespace tav::fuzz

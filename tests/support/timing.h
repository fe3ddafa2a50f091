#pragma once

// What work costs. Another program's load makes a time longer and never shorter, so work that is once as
// quick as it must be is; what grows faster than its input is too slow however often it is measured.

#include <gtest/gtest.h>

#include <functional>

namespace tav::test {

/// Does its work and gives the seconds that it took.
using Timed = std::function<double()>;

/// The seconds of processor time that `work` takes in this process.
double secondsOf(const std::function<void()>& work);

/// Whether `large` takes at most `times` of what `small` does, and `more` seconds. Both are measured in turn
/// until they do, a few times at most; the least of each counts.
testing::AssertionResult growsAtMost(const Timed& small, const Timed& large, double times, double more = 0);

/// Whether `work` takes at most `seconds`, measured in the same way.
testing::AssertionResult takesAtMost(const Timed& work, double seconds);

}  // namespace tav::test

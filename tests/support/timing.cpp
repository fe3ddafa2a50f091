#include "tests/support/timing.h"

#include <algorithm>
#include <ctime>
#include <limits>

namespace tav::test {
namespace {

constexpr int kRounds = 6;
constexpr double kNever = std::numeric_limits<double>::infinity();

}  // namespace

double secondsOf(const std::function<void()>& work) {
  const std::clock_t begin = std::clock();
  work();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

testing::AssertionResult growsAtMost(const Timed& small, const Timed& large, double times, double more) {
  double few = kNever;
  double many = kNever;
  for (int round = 0; round < kRounds; ++round) {
    few = std::min(few, small());
    many = std::min(many, large());
    if (many <= times * few + more) return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << many << " s are more than " << times << " times " << few << " s";
}

testing::AssertionResult takesAtMost(const Timed& work, double seconds) {
  double least = kNever;
  for (int round = 0; round < kRounds; ++round) {
    least = std::min(least, work());
    if (least <= seconds) return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << least << " s are more than " << seconds << " s";
}

}  // namespace tav::test

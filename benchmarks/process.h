#pragma once

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace tav::bench {

/// What one run of a program took, from before it was started until it had ended.
struct Cost {
  double wall = 0;              // seconds
  double processor = 0;         // seconds, of the program and of the system for it
  std::uint64_t peakBytes = 0;  // the most memory that was resident at one time
};

/// The best of several runs of one program, the most memory of them.
struct Best {
  void take(const Cost& cost) {
    if (runs++ == 0 || cost.wall < wall) wall = cost.wall;
    processor = runs == 1 ? cost.processor : std::min(processor, cost.processor);
    peakBytes = std::max(peakBytes, cost.peakBytes);
  }
  double wall = 0, processor = 0;  // seconds
  std::uint64_t peakBytes = 0;
  unsigned runs = 0;
};

/// A signal asked this program to end.
struct Interrupted : std::runtime_error {
  explicit Interrupted(int number) : std::runtime_error("interrupted"), signal(number) {}
  int signal;
};

/// From now on SIGINT and SIGTERM end a run with Interrupted, so that temporary files are removed.
void catchSignals();

/// Runs a program with its standard output thrown away and waits for it. `temporaryFolder` is the TMPDIR that
/// it is given. Throws std::runtime_error when it cannot be started or does not end with exit code 0.
Cost run(const std::vector<std::string>& command, const std::string& temporaryFolder);

}  // namespace tav::bench

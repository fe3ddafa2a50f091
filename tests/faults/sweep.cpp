// Lets each call of the program to the system fail in turn, and looks at what becomes of it: see
// commands.txt.

#include <fcntl.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstring>
#include <iostream>
#include <set>

#include "tests/faults/fault_plan.h"
#include "tests/faults/faulty_run.h"

namespace tav::test {
namespace {

/// One way in which calls of a kind fail.
struct Fault {
  FaultKind kind;
  const char* name;
  int error;      // 0: half of the bytes
  bool overcome;  // whether the program is to go on as if nothing had been
  bool from;      // whether all calls behind the first fail, too
};

constexpr std::array kFaults{
    Fault{faultMemory, "memory", ENOMEM, false, false},
    Fault{faultMemory, "all memory from there on", ENOMEM, false, true},
    Fault{faultMap, "mmap ENOMEM", ENOMEM, false, false},
    Fault{faultOpen, "open EMFILE", EMFILE, false, false},
    Fault{faultOpen, "open EACCES", EACCES, false, false},
    Fault{faultOpen, "open EIO", EIO, false, false},
    Fault{faultOpen, "open ENOSPC", ENOSPC, false, false},
    Fault{faultRead, "read EIO", EIO, false, false},
    Fault{faultRead, "read EINTR", EINTR, true, false},
    Fault{faultRead, "read half", 0, true, false},
    Fault{faultWrite, "write ENOSPC", ENOSPC, false, false},
    Fault{faultWrite, "write EIO", EIO, false, false},
    Fault{faultWrite, "write EINTR", EINTR, true, false},
    Fault{faultWrite, "write half", 0, true, false},
    Fault{faultWrite, "all writes from there on ENOSPC", ENOSPC, false, true},
    Fault{faultSync, "fsync EIO", EIO, false, false},
    Fault{faultSync, "fsync ENOSPC", ENOSPC, false, false},
    Fault{faultTruncate, "ftruncate EIO", EIO, false, false},
    Fault{faultRename, "rename EACCES", EACCES, false, false},
    Fault{faultRename, "rename EIO", EIO, false, false},
    Fault{faultRename, "rename ENOSPC", ENOSPC, false, false},
    Fault{faultClose, "close EIO", EIO, false, false},
    Fault{faultClose, "close EINTR", EINTR, true, false},
    Fault{faultPipe, "pipe EMFILE", EMFILE, false, false},
    Fault{faultSpawn, "fork EAGAIN", EAGAIN, false, false},
    Fault{faultWait, "waitpid EINTR", EINTR, true, false},
    Fault{faultWait, "waitpid ECHILD", ECHILD, false, false},
    Fault{faultPoll, "poll EINTR", EINTR, true, false},
    Fault{faultPoll, "poll ENOMEM", ENOMEM, false, false},
};

/// What a sweep of one kind of fault gave.
struct Tally {
  long calls = 0;
  long tried = 0;
  long overcome = 0;
  long refused = 0;
  long faulty = 0;
};

/// The calls of one command, started from one state, that are to fail in one way.
struct Series {
  const Scene* scene;
  std::size_t fault;
  long calls;
};

class Sweep {
 public:
  Sweep(std::vector<Scene>& scenes, Stage& stage) : scenes_(scenes), stage_(stage) {
    for (const Scene& scene : scenes_)
      for (std::size_t i = 0; i < kFaults.size(); ++i)
        if (const long calls = scene.calls[kFaults[i].kind]; calls > 0) series_.push_back({&scene, i, calls});
  }

  /// How many runs it takes to try every call.
  [[nodiscard]] long size() const {
    long sum = 0;
    for (const Series& series : series_) sum += series.calls;
    return sum;
  }

  /// Tries as many calls as cost about `most` runs, more of a series that is longer, the same each time.
  void run(long most) {
    double share = 0.001;
    while (cost(share) < static_cast<double>(std::min(most, cost())) && share < kWhole) share *= 1.05;
    std::array<double, kFaults.size()> dues{};
    dues.fill(kFewest);
    for (const Series& series : series_) {
      double& due = dues[series.fault];
      due += tries(series, share);
      const long count = std::min(static_cast<long>(due), series.calls);
      due -= static_cast<double>(count);
      tallies_[series.fault].calls += series.calls;
      // In the middle of each part of the series.
      for (long i = 0; i < count; ++i) tryCall(series, 1 + (2 * i + 1) * series.calls / (2 * count));
    }
  }

  void print(std::ostream& out) const {
    out << fmt::format("{:<34}{:>9}{:>9}{:>10}{:>9}{:>8}\n", "fault", "calls", "tried", "overcome", "refused",
                       "faulty");
    Tally sum;
    for (std::size_t i = 0; i < kFaults.size(); ++i) {
      printRow(out, kFaults[i].name, tallies_[i]);
      sum.calls += tallies_[i].calls;
      sum.tried += tallies_[i].tried;
      sum.overcome += tallies_[i].overcome;
      sum.refused += tallies_[i].refused;
      sum.faulty += tallies_[i].faulty;
    }
    printRow(out, "all", sum);
  }

  [[nodiscard]] bool isClean() const {
    return std::all_of(tallies_.begin(), tallies_.end(),
                       [](const Tally& tally) { return tally.faulty == 0; });
  }

 private:
  static constexpr double kWhole = 1e9;
  static constexpr double kFewest = 2;  // tries of each fault

  static void printRow(std::ostream& out, std::string_view name, const Tally& tally) {
    out << fmt::format("{:<34}{:>9}{:>9}{:>10}{:>9}{:>8}\n", name, tally.calls, tally.tried, tally.overcome,
                       tally.refused, tally.faulty);
  }

  /// How many calls of a series are tried at most.
  static double mostOf(const Series& series) {
    return std::ceil(static_cast<double>(series.calls) / series.scene->cost);
  }

  static double tries(const Series& series, double share) {
    const double calls = mostOf(series);
    return std::min(calls, share * std::sqrt(calls / series.scene->cost));
  }

  [[nodiscard]] double cost(double share) const {
    double sum = 0;
    for (const Series& series : series_) sum += tries(series, share) * series.scene->cost;
    return sum;
  }

  [[nodiscard]] long cost() const {
    double sum = 0;
    for (const Series& series : series_) sum += mostOf(series) * series.scene->cost;
    return static_cast<long>(sum);
  }

  void tryCall(const Series& series, long n) {
    Tally& tally = tallies_[series.fault];
    const Fault& fault = kFaults[series.fault];
    stage_.plan(fault.kind, n, fault.from ? LONG_MAX : n, fault.error);
    const Ending ending = stage_.run(*series.scene);
    const std::string wrong = stage_.judge(*series.scene, ending, fault.overcome);
    ++tally.tried;
    if (!wrong.empty()) {
      ++tally.faulty;
      std::cout << fmt::format("{}, {}, call {}: {}\n", series.scene->name, fault.name, n, wrong)
                << std::flush;
    } else {
      ++(ending.code == series.scene->code ? tally.overcome : tally.refused);
    }
  }

  std::vector<Scene>& scenes_;
  Stage& stage_;
  std::vector<Series> series_;
  std::array<Tally, kFaults.size()> tallies_{};
};

}  // namespace

int sweep(long most, const std::string& only) {
  Stage stage;
  std::vector<Scene> scenes = stage.loadScenes(only);
  Sweep sweep(scenes, stage);
  std::cout << fmt::format("{} commands and states, {} runs to try every call\n", scenes.size(), sweep.size())
            << std::flush;
  sweep.run(most > 0 ? most : LONG_MAX);
  sweep.print(std::cout);
  return sweep.isClean() ? 0 : 1;
}

}  // namespace tav::test

// sweep_faults MOST [NAME]: as many runs as cost about MOST that start no Java, 0 for all; only commands
// whose names begin with NAME. With XMLA_THOROUGH in the environment all are run.
int main(int argc, char** argv) {
  char* end = nullptr;
  const long most = argc > 1 ? std::strtol(argv[1], &end, 10) : -1;
  if (most < 0 || end == argv[1] || *end != '\0') {
    std::cerr << "usage: sweep_faults MOST [NAME]   MOST: about how many runs, 0: all, which takes hours\n";
    return 2;
  }
  const char* thorough = std::getenv("XMLA_THOROUGH");
  return tav::test::sweep(thorough && *thorough ? 0 : most, argc > 2 ? argv[2] : "");
}

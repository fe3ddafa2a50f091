// Ends the program at many moments, from outside, and runs it again: see commands.txt.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <iostream>

#include "tests/faults/fault_plan.h"
#include "tests/faults/faulty_run.h"

namespace tav::test {
namespace {

/// Calls before which the program is ended, and at most how many of them in each command.
struct Moment {
  FaultKind kind;
  long most;
};

/// Memory is taken at any time, what else there is at the steps of saving.
constexpr std::array kMoments{Moment{faultMemory, 8}, Moment{faultOpen, 4},   Moment{faultWrite, 4},
                              Moment{faultSync, 4},   Moment{faultRename, 4}, Moment{faultClose, 4},
                              Moment{faultWait, 1},   Moment{faultPoll, 1}};
/// Of commands that start Java, one moment of each kind is enough.
constexpr long kMostOfJava = 1;
constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGXCPU, SIGXFSZ};
constexpr int kExitOfSignal = 128;

class Killing {
 public:
  void run() {
    for (const Scene& scene : stage_.loadScenes("")) {
      for (const Moment& moment : kMoments) killAt(scene, moment);
      endBySignals(scene);
      runTogether(scene);
    }
  }

  [[nodiscard]] bool tell() const {
    std::cout << fmt::format("{} killed, {} ended by other signals, {} at the same time: {} faulty\n",
                             killed_, signalled_, together_, faulty_);
    return faulty_ == 0;
  }

 private:
  void killAt(const Scene& scene, const Moment& moment) {
    const long calls = scene.calls[moment.kind];
    const long count = std::min(calls, scene.cost > 1 ? kMostOfJava : moment.most);
    for (long i = 0; i < count; ++i) {
      const long call = 1 + (2 * i + 1) * calls / (2 * count);
      stage_.plan(moment.kind, call, call, -SIGKILL);
      const auto [ended, again] = stage_.runTwice(scene);
      ++killed_;
      const std::string where = fmt::format("{}, kind {}, call {}", scene.name, int{moment.kind}, call);
      note(where, Stage::judgeKilled(scene, ended));
      note(where + ", again", Stage::judgeDone(scene, again));
    }
  }

  // Where most memory has been taken, all is open that may be.
  void endBySignals(const Scene& scene) {
    if (scene.shared) return;  // one of its processes gets the signal
    for (std::size_t i = 0; i<kSignals.size(); i += scene.cost> 1 ? 3 : 1) {
      const int signal = kSignals[i];
      const long call = scene.calls[faultMemory] * static_cast<long>(9 + i) / 16;
      stage_.plan(faultMemory, call, call, -signal);
      const auto [ended, again] = stage_.runTwice(scene);
      ++signalled_;
      const std::string where = fmt::format("{}, signal {}, call {}", scene.name, signal, call);
      const bool goesOn = signal == SIGXFSZ;
      if (ended.code != (goesOn ? scene.code : kExitOfSignal + signal))
        note(where, fmt::format("exit code {}", ended.code));
      if (!ended.temporary.empty()) note(where, "left: " + ended.temporary.begin()->first);
      if (ended.files != (goesOn ? scene.after : scene.before) && !scene.words.back().ends_with(".db"))
        note(where, "another file");
      note(where + ", again", Stage::judgeDone(scene, again));
    }
  }

  void runTogether(const Scene& scene) {
    const auto [one, other] = stage_.runTogether(scene);
    ++together_;
    if (one.code != scene.code) note(scene.name + ", beside another", fmt::format("exit code {}", one.code));
    note(scene.name + ", beside another", Stage::judgeDone(scene, other));
  }

  void note(const std::string& where, const std::string& wrong) {
    if (wrong.empty()) return;
    ++faulty_;
    std::cout << where << ": " << wrong << std::endl;
  }

  Stage stage_;
  long killed_ = 0;
  long signalled_ = 0;
  long together_ = 0;
  long faulty_ = 0;
};

}  // namespace
}  // namespace tav::test

int main() {
  tav::test::Killing killing;
  killing.run();
  return killing.tell() ? 0 : 1;
}

#pragma once

// Runs of the program with a call that fails, and what they must leave behind.

#include <sys/types.h>

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/faults/fault_plan.h"
#include "tests/support/corpus.h"

namespace tav::test {

/// Every file of a folder with its bytes.
using Files = std::map<std::string, std::string>;

/// A command, the state that it starts from, and how it ends when nothing fails.
struct Scene {
  std::string name;
  std::vector<std::string> words;
  int cost = 1;         // of a run, in runs that start no Java
  bool shared = false;  // whether several processes do parts of the work, each of which counts by itself
  Files before;
  Files after;
  std::string output;
  std::size_t messages = 0;  // lines of them
  int code = 0;
  std::array<long, faultKinds> calls{};
};

/// How a run has ended.
struct Ending {
  int code = 0;  // -1: by a signal
  int signal = 0;
  std::string output;
  std::string errors;
  Files files;
  Files temporary;  // what is left in the folder for temporary files
};

/// The folder that the program runs in, and the plan of the calls that fail.
class Stage {
 public:
  Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage();

  /// Each command from an empty folder, and from one where the same command has written before. Only those
  /// whose names begin with `only`.
  std::vector<Scene> loadScenes(const std::string& only);
  /// The calls from `first` to `last` of a kind fail in the next run.
  void plan(int kind, long first, long last, int error);
  Ending run(const Scene& scene);
  /// The same, and then once more from what was left, without a fault.
  std::array<Ending, 2> runTwice(const Scene& scene);
  /// Two runs at the same time.
  std::array<Ending, 2> runTogether(const Scene& scene);
  /// What is wrong with the end of a run; empty if nothing is.
  static std::string judge(const Scene& scene, const Ending& ending, bool overcome);
  /// The same of a run that was ended from outside: every file must be the old one or the new one, beside
  /// what the next run clears away.
  static std::string judgeKilled(const Scene& scene, const Ending& ending);
  /// The same of a run that clears away what another has left, or that another was beside.
  static std::string judgeDone(const Scene& scene, const Ending& ending);

 private:
  Scene sceneOf(std::string_view name, std::string_view command, std::string_view definition,
                const Files& before);
  void restore(const Files& files);
  [[nodiscard]] Ending endingOf(int status);
  void clearTemporary() const;
  [[nodiscard]] pid_t start(const Scene& scene) const;

  TemporaryFolder folder_;
  Files held_;  // what is in the folder that the program runs in
  std::string model_;
  FaultPlan* plan_ = nullptr;
};

}  // namespace tav::test

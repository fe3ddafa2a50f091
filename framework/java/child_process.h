#pragma once

// A program that runs beside this one and is heard out.

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tav {

/// A file descriptor with its owner.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }

  [[nodiscard]] int get() const noexcept { return number_; }
  void close() noexcept;
  void reset(int number) noexcept;
  /// Gives the descriptor to the caller.
  [[nodiscard]] int release() noexcept;

 private:
  int number_ = -1;
};

/// How a process ended: by itself with an exit code, or by a signal.
struct ProcessEnd {
  bool bySignal;
  int number;
};

/// A running child process in a process group of its own. When its owner goes, or this process ends by
/// endUnfinishedWork() or in any other way, it is killed.
class ChildProcess {
 public:
  /// Starts the executable file `program`, without a shell: every argument reaches it as it is. Its standard
  /// input is empty, its locale is C.UTF-8. Throws a TAVException "[TAVJAVA_F0001] ...".
  ChildProcess(const std::string& program, const std::vector<std::string>& arguments);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  using Sink = std::function<void(std::string_view bytes)>;
  /// Hands on what the process writes, as it comes, and returns when it has ended; what it started in turn is
  /// then killed. What a sink throws ends the process. Called once.
  ProcessEnd wait(const Sink& output, const Sink& errors);

 private:
  void start(const std::string& program, char* const* arguments, char* const* environment);
  [[nodiscard]] bool hasEnded() const noexcept;
  void killGroup() const noexcept;
  ProcessEnd collect();

  pid_t process_ = 0;  // 0 once its end is collected
  Descriptor output_;
  Descriptor errors_;
};

}  // namespace tav

#pragma once

// What must not be left behind when a signal ends the process in the midst of its work: unfinished files,
// temporary folders, other processes. Their owners enlist them here.

#include <signal.h>
#include <sys/types.h>

#include <array>

#include "framework/api.h"

namespace tav {

/// The signals that end a program in the midst of its work, by people, schedulers, timers and limits.
inline constexpr std::array kEndingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGXCPU};

/// Enlists a temporary file or folder by its path, which must stay where it is in memory until it is struck.
TAV_API void enlistTemporary(const char* path) noexcept;
TAV_API void strikeTemporary(const char* path) noexcept;

/// Enlists a child process that leads a process group of its own. It is struck before its end is collected:
/// from then on its number may be another's.
TAV_API void enlistProcess(pid_t process) noexcept;
TAV_API void strikeProcess(pid_t process) noexcept;

/// Ends the enlisted processes with their groups and removes the temporary files and folders. Safe to call
/// from a signal handler that ends the process.
TAV_API void endUnfinishedWork() noexcept;

/// Holds the signals that end programs back while it lives: between the making of something and its
/// enlisting, it would be left behind. One thread is meant, the one that lives through the making.
class TAV_API HeldSignals {
 public:
  HeldSignals() noexcept;
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals();

  /// What was held back before.
  [[nodiscard]] const sigset_t& before() const noexcept { return before_; }

 private:
  sigset_t before_{};
};

}  // namespace tav

#include "framework/std/interruption.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>

namespace tav {
namespace {

// A signal handler may read these, so they are plain atomics: no lock, no allocation.
constexpr std::size_t kMostEntries = 16;
std::array<std::atomic<const char*>, kMostEntries> temporaries;
std::array<std::atomic<pid_t>, kMostEntries> processes;

template <class T>
void replaceFirst(std::array<std::atomic<T>, kMostEntries>& places, T from, T to) noexcept {
  for (auto& place : places) {
    T expected = from;
    if (place.compare_exchange_strong(expected, to)) return;
  }
}

// A process that was killed ends at once, unless a device holds it; then nobody is to wait for it.
void awaitEnd(pid_t process) noexcept {
  constexpr int kLooks = 200;
  constexpr timespec kPause{0, 10'000'000};
  for (int i = 0; i < kLooks && waitpid(process, nullptr, WNOHANG) == 0; ++i) nanosleep(&kPause, nullptr);
}

int openFolder(int parent, const char* name) noexcept {
  return openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

// Removes what can be removed in an open folder; whether anything was. It reads the folder by the system call
// itself, since opendir() allocates. Removing may hide entries from a reading that is under way.
// NOLINTNEXTLINE(misc-no-recursion): kDeepest guards it, and with it the handler's stack
bool removeEntries(int folder, int depth) noexcept {
  constexpr int kDeepest = 8;
  alignas(dirent64) std::array<char, 2048> entries;
  bool removed = false;
  lseek(folder, 0, SEEK_SET);
  for (;;) {
    const auto size = syscall(SYS_getdents64, folder, entries.data(), entries.size());
    if (size <= 0) return removed;
    for (const char* at = entries.data(); at < entries.data() + size;) {
      const auto& entry = *reinterpret_cast<const dirent64*>(at);
      at += entry.d_reclen;
      if (std::strcmp(entry.d_name, ".") == 0 || std::strcmp(entry.d_name, "..") == 0) continue;
      const int inner = depth < kDeepest ? openFolder(folder, entry.d_name) : -1;
      if (inner >= 0) {
        while (removeEntries(inner, depth + 1)) continue;
        close(inner);
      }
      if (unlinkat(folder, entry.d_name, inner >= 0 ? AT_REMOVEDIR : 0) == 0) removed = true;
    }
  }
}

void removePath(const char* path) noexcept {
  if (unlink(path) == 0) return;
  const int folder = openFolder(AT_FDCWD, path);
  if (folder < 0) return;
  while (removeEntries(folder, 0)) continue;
  close(folder);
  rmdir(path);
}

}  // namespace

void enlistTemporary(const char* path) noexcept {
  replaceFirst<const char*>(temporaries, nullptr, path);
}

void strikeTemporary(const char* path) noexcept {
  replaceFirst<const char*>(temporaries, path, nullptr);
}

void enlistProcess(pid_t process) noexcept {
  replaceFirst<pid_t>(processes, 0, process);
}

void strikeProcess(pid_t process) noexcept {
  replaceFirst<pid_t>(processes, process, 0);
}

void endUnfinishedWork() noexcept {
  for (auto& place : processes) {
    const pid_t process = place.load();
    if (process == 0) continue;
    kill(-process, SIGKILL);
    awaitEnd(process);
  }
  for (auto& place : temporaries)
    if (const char* path = place.load()) removePath(path);
}

HeldSignals::HeldSignals() noexcept {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : kEndingSignals) sigaddset(&held, signal);
  pthread_sigmask(SIG_BLOCK, &held, &before_);
}

HeldSignals::~HeldSignals() {
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace tav

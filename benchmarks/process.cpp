#include "benchmarks/process.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace tav::bench {
namespace {

constexpr int kNotStarted = 127;

volatile std::sig_atomic_t caughtSignal = 0;

void remember(int signal) {
  caughtSignal = signal;
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

[[noreturn]] void become(std::vector<char*>& arguments, const std::string& temporaryFolder) {
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere >= 0) ::dup2(nowhere, STDOUT_FILENO);
  ::setenv("TMPDIR", temporaryFolder.c_str(), 1);
  ::execvp(arguments[0], arguments.data());
  ::_exit(kNotStarted);
}

/// Waits for the child and passes on to it what asks this program to end.
int waitFor(pid_t child, rusage& usage) {
  int status = 0;
  while (::wait4(child, &status, 0, &usage) < 0) {
    if (errno != EINTR) throw std::runtime_error(std::string("wait4: ") + std::strerror(errno));
    if (caughtSignal) ::kill(child, caughtSignal);
  }
  return status;
}

}  // namespace

void catchSignals() {
  struct sigaction action {};
  action.sa_handler = remember;
  ::sigaction(SIGINT, &action, nullptr);
  ::sigaction(SIGTERM, &action, nullptr);
}

Cost run(const std::vector<std::string>& command, const std::string& temporaryFolder) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);

  const auto start = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
  if (child == 0) become(arguments, temporaryFolder);
  rusage usage{};
  const int status = waitFor(child, usage);
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;

  if (caughtSignal) throw Interrupted(caughtSignal);
  if (WIFSIGNALED(status))
    throw std::runtime_error(command[0] + " was ended by signal " + std::to_string(WTERMSIG(status)));
  if (WEXITSTATUS(status) == kNotStarted) throw std::runtime_error(command[0] + " could not be started");
  if (WEXITSTATUS(status) != 0)
    throw std::runtime_error(command[0] + " ended with exit code " + std::to_string(WEXITSTATUS(status)));
  return {wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
          static_cast<std::uint64_t>(usage.ru_maxrss) * 1024};
}

}  // namespace tav::bench

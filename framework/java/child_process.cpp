#include "framework/java/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "framework/std/exception.h"
#include "framework/std/interruption.h"

namespace tav {
namespace {

constexpr std::size_t kChunk = std::size_t{64} << 10;
// How often the process is looked at while its pipes are silent: what it started may keep them open.
constexpr int kLookMilliseconds = 100;
constexpr std::string_view kLocale = "LC_ALL=";

[[noreturn]] void failToRun(const std::string& program, int error) {
  fail("TAVJAVA_F0001", "Unable to run '" + program + "': " + std::generic_category().message(error));
}

struct Pipe {
  Descriptor from;
  Descriptor to;
};

/// Its ends are none of the standard descriptors, which may be closed here and are replaced in the child.
void open(Pipe& pipe, const std::string& program) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) failToRun(program, errno);
  pipe.from.reset(ends[0]);
  pipe.to.reset(ends[1]);
  for (Descriptor* end : {&pipe.from, &pipe.to}) {
    if (end->get() > STDERR_FILENO) continue;
    const int moved = fcntl(end->get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (moved < 0) failToRun(program, errno);
    end->reset(moved);
  }
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// Our environment, but for the locale: it decides how Java reads file names and writes messages.
std::vector<std::string> childEnvironment() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable; ++variable)
    if (!std::string_view(*variable).starts_with(kLocale)) variables.emplace_back(*variable);
  variables.push_back(std::string(kLocale) + "C.UTF-8");
  return variables;
}

struct ChildEnds {
  int input;
  int output;
  int errors;
  int report;
};

/// The child's side of the fork. Other threads of the parent may have held locks: system calls only.
[[noreturn]] void becomeProgram(const char* program, char* const* arguments, char* const* environment,
                                const ChildEnds& ends, const sigset_t& signals, pid_t parent) noexcept {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);  // it ended before it could be watched
  setpgid(0, 0);
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  for (const int signal : kEndingSignals) sigaction(signal, &standard, nullptr);
  for (const int signal : {SIGPIPE, SIGXFSZ}) sigaction(signal, &standard, nullptr);
  sigprocmask(SIG_SETMASK, &signals, nullptr);
  if (dup2(ends.input, STDIN_FILENO) >= 0 && dup2(ends.output, STDOUT_FILENO) >= 0 &&
      dup2(ends.errors, STDERR_FILENO) >= 0)
    execve(program, arguments, environment);
  const int error = errno;
  static_cast<void>(!write(ends.report, &error, sizeof error));
  _exit(1);
}

/// Hands on what there is to read. The descriptor is closed at its end.
void pass(Descriptor& from, std::vector<char>& chunk, const ChildProcess::Sink& sink) {
  const ssize_t size = read(from.get(), chunk.data(), chunk.size());
  if (size > 0)
    sink({chunk.data(), static_cast<std::size_t>(size)});
  else if (size == 0 || errno != EINTR)
    from.close();
}

}  // namespace

void Descriptor::close() noexcept {
  if (number_ >= 0) ::close(number_);
  number_ = -1;
}

void Descriptor::reset(int number) noexcept {
  close();
  number_ = number;
}

int Descriptor::release() noexcept {
  return std::exchange(number_, -1);
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> environment = childEnvironment();
  start(program, pointersTo(words).data(), pointersTo(environment).data());
}

void ChildProcess::start(const std::string& program, char* const* arguments, char* const* environment) {
  Pipe output, errors, report;
  for (Pipe* pipe : {&output, &errors, &report}) open(*pipe, program);
  Descriptor input(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  // Where standard input is closed here, this is 0, and closing it on exec would undo its own dup2.
  if (input.get() >= 0 && input.get() <= STDERR_FILENO)
    input.reset(fcntl(input.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (input.get() < 0) failToRun(program, errno);

  const HeldSignals held;
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) failToRun(program, errno);
  if (child == 0)
    becomeProgram(program.c_str(), arguments, environment,
                  {input.get(), output.to.get(), errors.to.get(), report.to.get()}, held.before(), parent);
  enlistProcess(child);
  process_ = child;
  report.to.close();
  int error = 0;
  ssize_t size = 0;
  do size = read(report.from.get(), &error, sizeof error);
  while (size < 0 && errno == EINTR);
  if (size > 0) {
    collect();
    failToRun(program, error);
  }
  output_.reset(output.from.release());
  errors_.reset(errors.from.release());
}

ChildProcess::~ChildProcess() {
  if (process_ == 0) return;
  killGroup();
  collect();
}

ProcessEnd ChildProcess::wait(const Sink& output, const Sink& errors) {
  std::vector<char> chunk(kChunk);
  bool ended = false;
  while (output_.get() >= 0 || errors_.get() >= 0) {
    std::array<pollfd, 2> ready{{{output_.get(), POLLIN, 0}, {errors_.get(), POLLIN, 0}}};
    const int count = poll(ready.data(), ready.size(), kLookMilliseconds);
    if (count < 0 && errno != EINTR)
      fail("TAVJAVA_F0010", "The Java importer cannot be awaited: " + std::generic_category().message(errno));
    if (count == 0 && ended) break;  // a process outside the group holds the pipes
    if (!ended && hasEnded()) {
      ended = true;
      killGroup();
    }
    if (count <= 0) continue;
    if (ready[0].revents != 0) pass(output_, chunk, output);
    if (ready[1].revents != 0) pass(errors_, chunk, errors);
  }
  return collect();
}

bool ChildProcess::hasEnded() const noexcept {
  siginfo_t information{};
  return waitid(P_PID, static_cast<id_t>(process_), &information, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         information.si_pid == process_;
}

void ChildProcess::killGroup() const noexcept {
  kill(-process_, SIGKILL);
}

ProcessEnd ChildProcess::collect() {
  siginfo_t information{};
  int result = 0;
  do result = waitid(P_PID, static_cast<id_t>(process_), &information, WEXITED | WNOWAIT);
  while (result != 0 && errno == EINTR);
  killGroup();  // its number is still its own: what it started and left behind goes with it
  strikeProcess(process_);
  const pid_t process = std::exchange(process_, 0);
  int status = 0;
  pid_t ended = 0;
  do ended = waitpid(process, &status, 0);
  while (ended < 0 && errno == EINTR);
  if (result != 0 || ended != process) return {false, -1};
  return WIFSIGNALED(status) ? ProcessEnd{true, WTERMSIG(status)} : ProcessEnd{false, WEXITSTATUS(status)};
}

}  // namespace tav

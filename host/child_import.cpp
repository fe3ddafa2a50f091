#include "host/child_import.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "framework/serialization/replacing_file.h"
#include "messages/message.h"

namespace host {
namespace {

[[noreturn]] void failToStart(int error) {
  tav::fail(tav::Message::processNotStarted, {std::generic_category().message(error)});
}

/// How the process is set up: its messages and its summary go to one pipe, its input is empty.
class SpawnSetup {
 public:
  SpawnSetup(int pipe, const sigset_t& signals) {
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setsigmask(&attributes, &signals);
    posix_spawn_file_actions_adddup2(&actions, pipe, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, pipe, STDERR_FILENO);
    // The last one: the pipe may itself be 0 where standard input is closed.
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;
  ~SpawnSetup() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }

  posix_spawnattr_t attributes{};
  posix_spawn_file_actions_t actions{};
};

pid_t spawn(const EstateFile& file, const std::vector<std::string>& options, int pipe,
            const sigset_t& signals) {
  std::vector<std::string> words{"xmla-bridge", "import", "--json", "--log-format", "json"};
  words.insert(words.end(), options.begin(), options.end());
  if (!file.output.empty()) words.insert(words.end(), {"-o", file.output});
  words.insert(words.end(), {"--", file.input});
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const SpawnSetup setup(pipe, signals);
  pid_t process = 0;
  const int error =
      posix_spawn(&process, "/proc/self/exe", &setup.actions, &setup.attributes, arguments.data(), environ);
  if (error != 0) failToStart(error);
  return process;
}

}  // namespace

ChildImport::ChildImport(const EstateFile& file, const std::vector<std::string>& options,
                         const sigset_t& signals)
    : saved_(file.output) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) failToStart(errno);
  output_ = ends[0];
  try {
    process_ = spawn(file, options, ends[1], signals);
  } catch (...) {
    close(ends[0]);
    close(ends[1]);
    throw;
  }
  close(ends[1]);
}

ChildImport::~ChildImport() {
  if (process_ != 0) {
    sendSignal(SIGTERM);
    collect();
  }
  close(output_);
}

bool ChildImport::read(const LineSink& sink) {
  std::array<char, std::size_t{64} << 10> chunk{};
  const ssize_t size = ::read(output_, chunk.data(), chunk.size());
  if (size < 0) return errno == EINTR;
  std::string_view bytes(chunk.data(), static_cast<std::size_t>(size));
  for (std::size_t end = bytes.find('\n'); end != bytes.npos; end = bytes.find('\n')) {
    line_.append(bytes.substr(0, end));
    sink(std::exchange(line_, {}));
    bytes.remove_prefix(end + 1);
  }
  line_.append(bytes);
  if (size == 0 && !line_.empty()) sink(std::exchange(line_, {}));
  return size > 0;
}

void ChildImport::sendSignal(int signal) const noexcept {
  kill(process_, signal);
}

int ChildImport::collect() {
  int status = 0;
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
  process_ = 0;
  if (WIFSIGNALED(status) && !saved_.empty()) tav::removeUnfinished(TAVString(saved_));
  return status;
}

}  // namespace host

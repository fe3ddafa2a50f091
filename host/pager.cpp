#include "host/pager.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <wordexp.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>

#include "host/message_log.h"
#include "host/standard_output.h"
#include "host/terminal.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr const char* kUsualPager = "less";
constexpr std::string_view kNoPager = "cat";

/// The pager that the user has named, the usual one where none is; empty for none.
std::string pagerCommand() {
  for (const char* variable : {"XMLA_PAGER", "PAGER"})
    if (const char* command = std::getenv(variable)) return command == kNoPager ? std::string() : command;
  return kUsualPager;
}

/// While a pager is up, the keys that interrupt are for it.
class KeysOfPager {
 public:
  KeysOfPager() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) before_[i] = std::signal(kSignals[i], SIG_IGN);
  }
  KeysOfPager(const KeysOfPager&) = delete;
  KeysOfPager& operator=(const KeysOfPager&) = delete;
  ~KeysOfPager() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) std::signal(kSignals[i], before_[i]);
  }

 private:
  static constexpr std::array kSignals{SIGINT, SIGQUIT};
  std::array<void (*)(int), kSignals.size()> before_{};
};

/// A pager that runs: what it shows is written to its descriptor.
class Pager {
 public:
  /// Null where it cannot be started.
  static std::unique_ptr<Pager> start(const std::string& command) {
    wordexp_t words{};
    // Words and quotes as a shell has them, but no command runs for them.
    if (wordexp(command.c_str(), &words, WRDE_NOCMD) != 0 || words.we_wordc == 0) return nullptr;
    std::array<int, 2> ends{};
    std::unique_ptr<Pager> pager;
    if (pipe2(ends.data(), O_CLOEXEC) == 0) {
      pager = start(words.we_wordv, ends);
      close(ends[0]);
      if (!pager) close(ends[1]);
    }
    wordfree(&words);
    return pager;
  }

  Pager(pid_t process, int descriptor) : process_(process), descriptor_(descriptor) {}
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;
  ~Pager() {
    close(descriptor_);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
  }

  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

 private:
  static std::unique_ptr<Pager> start(char** words, const std::array<int, 2>& ends) {
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, ends[0], STDIN_FILENO);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    // The program ignores some signals; the pager begins as a shell would start it.
    sigset_t signals{};
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGQUIT, SIGPIPE, SIGXFSZ}) sigaddset(&signals, signal);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    // Colours as they are, no pager for what fits after all, and the text stays on the screen.
    setenv("LESS", "FRX", 0);
    setenv("LV", "-c", 0);
    pid_t process = 0;
    const int failure = posix_spawnp(&process, words[0], &files, &attributes, words, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return failure == 0 ? std::make_unique<Pager>(process, ends[1]) : nullptr;
  }

  KeysOfPager keys_;
  pid_t process_;
  int descriptor_;
};

}  // namespace

/// Keeps text until it is longer than the terminal.
class PagedOutput::Buffer : public std::streambuf {
 public:
  explicit Buffer(MessageLog& log) : log_(log), size_(sizeOfTerminal(STDOUT_FILENO)) {}

  void finish() {
    write();
    pager_.reset();
  }

  [[nodiscard]] bool isPaged() const noexcept { return pager_ != nullptr; }

 protected:
  int_type overflow(int_type character) override {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char one = traits_type::to_char_type(character);
    xsputn(&one, 1);
    return character;
  }

  std::streamsize xsputn(const char* text, std::streamsize count) override {
    const std::string_view added(text, static_cast<std::size_t>(count));
    text_ += added;
    if (!isLong_) {
      countRows(added);
      isLong_ = rows_ >= size_.rows;
      if (isLong_) startPager();
    }
    if (isLong_ && text_.size() >= kWritten) write();
    return count;
  }

 private:
  static constexpr std::size_t kWritten = std::size_t{1} << 14;

  /// A line that is wider than the terminal takes several rows.
  void countRows(std::string_view added) {
    for (const char c : added) {
      rows_ += c == '\n' || ++bytes_ > size_.columns;
      if (c == '\n' || bytes_ > size_.columns) bytes_ = 0;
    }
  }

  void startPager() {
    const std::string command = pagerCommand();
    if (command.empty()) return;
    pager_ = Pager::start(command);
    if (!pager_ && command != kUsualPager)
      log_.logEvent(tav::messageEvent(tav::Message::pagerNotStarted, {command}));
  }

  void write() {
    writeAll(pager_ ? pager_->descriptor() : STDOUT_FILENO, text_);
    text_.clear();
  }

  MessageLog& log_;
  TerminalSize size_;
  std::string text_;       // not yet written
  std::size_t rows_ = 0;   // so far, until they are too many
  std::size_t bytes_ = 0;  // in the last of them
  bool isLong_ = false;
  std::unique_ptr<Pager> pager_;
};

PagedOutput::PagedOutput(MessageLog& log)
    : buffer_(std::make_unique<Buffer>(log)), stream_(std::make_unique<std::ostream>(buffer_.get())) {
  stream_->exceptions(std::ios::badbit);  // hands the buffer's own exception on
}

PagedOutput::~PagedOutput() = default;

void PagedOutput::finish() {
  buffer_->finish();
}

bool PagedOutput::isPaged() const noexcept {
  return buffer_->isPaged();
}

}  // namespace host

#include "host/estate_import.h"

#include <fmt/format.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <list>
#include <nlohmann/json.hpp>
#include <system_error>

#include "framework/std/exception.h"
#include "framework/std/interruption.h"
#include "host/child_import.h"
#include "host/command.h"
#include "messages/message.h"

namespace host {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kRenewal{500};  // of the time that the progress line shows
constexpr std::chrono::seconds kGrace{10};          // for processes to end by themselves

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The signals that end the program, received where it waits instead of anywhere.
class SignalWatch {
 public:
  SignalWatch() {
    sigset_t watched;
    sigemptyset(&watched);
    for (const int signal : tav::kEndingSignals) sigaddset(&watched, signal);
    descriptor_ = signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ < 0) tav::fail(tav::Message::signalsNotWatched, {std::generic_category().message(errno)});
  }
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;
  ~SignalWatch() { close(descriptor_); }

  [[nodiscard]] int getDescriptor() const noexcept { return descriptor_; }
  [[nodiscard]] const sigset_t& before() const noexcept { return held_.before(); }
  /// The number of a signal that has come, or 0.
  [[nodiscard]] int take() const {
    signalfd_siginfo information{};
    const ssize_t size = ::read(descriptor_, &information, sizeof information);
    return size == sizeof information ? static_cast<int>(information.ssi_signo) : 0;
  }

 private:
  tav::HeldSignals held_;
  int descriptor_ = -1;
};

/// The gravest message of an import, the first of several: why it failed.
class Cause {
 public:
  void offer(std::int32_t severity, const std::string& identifier, const std::string& text) {
    if (severity >= severity_) return;
    severity_ = severity;
    text_ = identifier.empty() ? text : fmt::format("[{}] {}", identifier, text);
  }
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  std::int32_t severity_ = tav::kSeverityWarning;
  std::string text_;
};

struct Running {
  Running(std::size_t place, const EstateFile& file, const std::vector<std::string>& options,
          const sigset_t& signals)
      : index(place), process(file, options, signals) {}

  std::size_t index;  // in the estate
  ChildImport process;
  Cause cause;
  Clock::time_point start = Clock::now();
};

class EstateImport {
 public:
  EstateImport(const std::vector<EstateFile>& files, std::size_t jobs,
               const std::vector<std::string>& options, MessageLog& log)
      : files_(files), jobs_(jobs), options_(options), log_(log) {
    run_.results.resize(files.size());
  }

  EstateRun run() {
    while (startMore(), !running_.empty()) {
      showProgress();
      await();
    }
    log_.clearProgress();
    run_.seconds = secondsSince(start_);
    return std::move(run_);
  }

 private:
  void startMore() {
    while (run_.signal == 0 && running_.size() < jobs_ && next_ < files_.size()) {
      const std::size_t index = next_++;
      try {
        running_.emplace_back(index, files_[index], options_, signals_.before());
      } catch (const TAVException& error) {
        run_.results[index].cause = error.getMessage().str();
        log_.logFailure(run_.results[index].cause, files_[index].input);
        tellEnd(index);
      }
    }
  }

  void await() {
    std::vector<pollfd> ready{{signals_.getDescriptor(), POLLIN, 0}};
    for (const Running& import : running_) ready.push_back({import.process.getDescriptor(), POLLIN, 0});
    const int count = poll(ready.data(), ready.size(), static_cast<int>(kRenewal.count()));
    if (count < 0 && errno != EINTR)
      tav::fail(tav::Message::processesNotAwaited, {std::generic_category().message(errno)});
    if (run_.signal != 0 && Clock::now() - interrupted_ > kGrace) signalAll(SIGKILL);
    if (count <= 0) return;
    if (ready[0].revents != 0) interrupt(signals_.take());
    auto import = running_.begin();
    for (std::size_t i = 1; i < ready.size(); ++i) {
      const auto current = import++;
      if (ready[i].revents != 0 && !listen(*current)) finish(current);
    }
  }

  /// Lets the processes end by themselves at the first signal, and kills them at the second.
  void interrupt(int signal) {
    if (signal == 0) return;
    signalAll(run_.signal == 0 ? SIGTERM : SIGKILL);
    if (run_.signal != 0) return;
    run_.signal = signal;
    interrupted_ = Clock::now();
  }

  void signalAll(int signal) const {
    for (const Running& import : running_) import.process.sendSignal(signal);
  }

  bool listen(Running& import) {
    return import.process.read([&](std::string_view line) { understand(import, line); });
  }

  void understand(Running& import, std::string_view line) {
    const auto said = nlohmann::ordered_json::parse(line, nullptr, false);
    if (!said.is_object()) {
      // No message of ours: a library's or the system's last words.
      import.cause.offer(tav::kSeverityError, "", std::string(line));
      report(import.index, tav::kSeverityError, "", std::string(line));
    } else if (said.contains("level")) {
      understandMessage(import, tav::severityOf(said.value("level", "")).value_or(tav::kSeverityError),
                        said.value("id", ""), said.value("text", ""));
    } else {
      run_.results[import.index].summary = line;
      run_.results[import.index].unchanged = said.value("unchanged", false);
    }
  }

  void understandMessage(Running& import, std::int32_t severity, const std::string& identifier,
                         const std::string& text) {
    run_.results[import.index].warnings += severity == tav::kSeverityWarning;
    import.cause.offer(severity, identifier, text);
    // The rest tells how far an import has come, which the messages about the estate tell.
    if (severity <= tav::kSeverityWarning) report(import.index, severity, identifier, text);
  }

  void report(std::size_t index, std::int32_t severity, const std::string& identifier,
              const std::string& text) {
    log_.logEventOf(files_[index].input, {TAVString(text), TAVString(identifier), severity, TAVString()});
  }

  void finish(std::list<Running>::iterator import) {
    const std::size_t index = import->index;
    EstateResult& result = run_.results[index];
    const int status = import->process.collect();
    if (WIFSIGNALED(status)) {
      result.cause = tav::messageText(tav::Message::importKilled,
                                      {std::to_string(WTERMSIG(status)), strsignal(WTERMSIG(status))});
      if (run_.signal == 0) log_.logFailure(result.cause, files_[index].input);
    } else if (WEXITSTATUS(status) == kDone) {
      result.outcome = result.unchanged       ? Outcome::unchanged
                       : result.warnings == 0 ? Outcome::ok
                                              : Outcome::warnings;
    } else {
      const int code = WEXITSTATUS(status);
      result.outcome = code == kIncomplete     ? Outcome::incomplete
                       : code == kNoDefinition ? Outcome::noDefinition
                                               : Outcome::failed;
      result.cause = import->cause.text();
    }
    result.seconds = secondsSince(import->start);
    running_.erase(import);
    tellEnd(index);
  }

  void tellEnd(std::size_t index) {
    ++done_;
    if (run_.signal != 0) return;
    const Outcome outcome = run_.results[index].outcome;
    log_.logEventOf(files_[index].input,
                    tav::messageEvent(tav::Message::importEnded, {outcomeName(outcome), std::to_string(done_),
                                                                  std::to_string(files_.size())}));
  }

  void showProgress() {
    if (done_ == files_.size()) return;
    std::string step = fmt::format("{} of {} files, running:", done_, files_.size());
    for (const Running& import : running_) step.append(" ").append(files_[import.index].input);
    log_.showProgress(step, static_cast<int>(100 * done_ / files_.size()));
  }

  const std::vector<EstateFile>& files_;
  std::size_t jobs_;
  const std::vector<std::string>& options_;
  MessageLog& log_;
  SignalWatch signals_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point interrupted_;
  EstateRun run_;
  std::size_t next_ = 0;  // of the files, the first that is not yet started
  std::size_t done_ = 0;
  std::list<Running>
      running_;  // behind the signals: processes that are left end before those are let through
};

}  // namespace

EstateRun importEstate(const std::vector<EstateFile>& files, std::size_t jobs,
                       const std::vector<std::string>& options, MessageLog& log) {
  return EstateImport(files, jobs, options, log).run();
}

}  // namespace host

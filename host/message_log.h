#pragma once

// Messages for people and scripts, on standard error.

#include <chrono>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "framework/std/log.h"
#include "framework/std/printable.h"
#include "host/terminal.h"

namespace host {

enum class LogFormat { text, json };

/// Writes each event as a line, or as a JSON object of its own line. On a terminal, progress is one line that
/// renews itself, and text has colours. Passwords are masked.
class MessageLog : public TAVLog {
 public:
  MessageLog();
  MessageLog(const MessageLog&) = delete;
  MessageLog& operator=(const MessageLog&) = delete;
  ~MessageLog() override;

  /// Where the command line's options go; until it is parsed, messages are text and none is held back.
  bool quiet = false;  ///< errors only
  LogFormat format = LogFormat::text;
  TerminalOptions terminal;
  /// Whether the steps of an import are told; in JSON they always are.
  bool tellsSteps = false;
  /// The file, one of several, that events are about; empty where there is only one.
  std::string about;
  /// Whether the texts of warnings are kept for getWarnings().
  bool keepsWarnings = false;
  /// Takes the events in the place of standard error, each with its text masked and the file that it is
  /// about.
  std::function<void(const std::string& file, const TAVLogEvent& event)> receiver;

  void logEvent(const TAVLogEvent& event) override;
  /// Reports an event about one of several files: the line begins with its name.
  void logEventOf(const std::string& file, const TAVLogEvent& event);
  /// From now on events call the file at `path` by a name that its reader knows it by.
  void callFile(std::string path, std::string name);
  /// Reports a failure whose message reads "[identifier] text", of one of several files if one is named.
  void logFailure(std::string_view message, const std::string& file = {});
  /// A step under way, with its share of the whole in percent; shown on a terminal only.
  void showProgress(const std::string& step, int percent);
  /// Takes the progress line away.
  void clearProgress();

  /// How many references the plug-in has reported as unresolved.
  [[nodiscard]] std::size_t getUnresolvedCount() const noexcept { return unresolved_; }
  /// How many errors were reported that did not end what reported them: each is a part that is not read.
  [[nodiscard]] std::size_t getErrorCount() const noexcept { return errors_; }
  /// The warnings so far, or since they were forgotten, each "[identifier] text".
  [[nodiscard]] std::span<const std::string> getWarnings() const noexcept { return warnings_; }
  void forgetWarnings() { warnings_.clear(); }

 private:
  [[nodiscard]] TAVLogEvent withNames(const TAVLogEvent& event) const;
  void writeLine(const std::string& file, const TAVLogEvent& event);
  void renewProgress(const std::string& text, bool must);

  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now();
  Clock::time_point renewed_;
  std::string progress_;  // what the progress line shows; empty when there is none
  std::size_t unresolved_ = 0;
  std::size_t errors_ = 0;
  std::vector<std::string> warnings_;
  std::vector<std::pair<std::string, std::string>> calledFiles_;  // paths, and what they are called
  bool isTerminal_;
};

using tav::printable;

}  // namespace host

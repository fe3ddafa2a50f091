#include "host/message_log.h"

#include <fmt/format.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "framework/std/mask.h"
#include "framework/std/text.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr std::string_view kUnresolvedId = "QVT_SSXMLA_W0013";
constexpr std::chrono::milliseconds kRenewal{
    50};                                    // more often, and drawing would take longer than the import
constexpr std::size_t kLongestName = 240;   // bytes of a name in a message; a longer one is cut in its middle
constexpr std::size_t kLongestText = 2000;  // and of the whole text
constexpr std::string_view kClearLine = "\r\x1b[K";
constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kYellow = "\x1b[33m";
constexpr std::string_view kPlain = "\x1b[0m";

void writeError(std::string_view text) {
  // There is no place left to tell that standard error cannot be written.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

/// The beginning and the end of a text that is longer than `bytes`: two thirds and one of them.
std::string withoutMiddle(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return std::string(text);
  const std::string_view beginning = tav::beginningOf(text, bytes - bytes / 3);
  const std::size_t end = tav::beginningOf(text, text.size() - bytes / 3).size();
  return std::string(beginning) + "…" + std::string(text.substr(end));
}

/// A message of a few lines, whatever the names in it are, which stand in quotes.
std::string shortened(std::string_view text) {
  std::string kept;
  for (;;) {
    const std::size_t quote = text.find('\'');
    const bool isName = !kept.empty() && quote != text.npos;
    const std::string_view part = text.substr(0, quote);
    kept += isName ? withoutMiddle(part, kLongestName) : std::string(part);
    if (quote == text.npos) return withoutMiddle(kept, kLongestText);
    kept += '\'';
    text.remove_prefix(quote + 1);
  }
}

/// What is shown of an event, or of the name of a file: both may hold a password.
std::string shown(std::string_view text) {
  return printable(shortened(tav::maskPasswords(text)));
}

/// The text of an event; the items of a list are lines of their own.
std::string shownOf(const TAVLogEvent& event) {
  std::string_view text = event.getText();
  if (!tav::endsInList(event.getMessageId())) return shown(text);
  std::string lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    lines += shown(text.substr(0, end));
    if (end == text.npos) return lines;
    lines += '\n';
    text.remove_prefix(end + 1);
  }
}

std::string withFile(const std::string& file, const std::string& line) {
  return file.empty() ? line : shown(file) + ": " + line;
}

std::string withIdentifier(const TAVLogEvent& event, const std::string& text) {
  return event.getMessageId().empty() ? text : fmt::format("[{}] {}", event.getMessageId().view(), text);
}

TAVLogEvent masked(const TAVLogEvent& event) {
  return {tav::maskPasswords(event.getText()), event.getMessageId(), event.getSeverity(), TAVString()};
}

}  // namespace

MessageLog::MessageLog() : isTerminal_(isTerminal(STDERR_FILENO)) {}

MessageLog::~MessageLog() {
  clearProgress();
}

void MessageLog::logEvent(const TAVLogEvent& event) {
  logEventOf(about, event);
}

void MessageLog::callFile(std::string path, std::string name) {
  calledFiles_.emplace_back(std::move(path), std::move(name));
}

TAVLogEvent MessageLog::withNames(const TAVLogEvent& event) const {
  TAVString text = event.getText();
  for (const auto& [path, name] : calledFiles_) text = text.replaceAll(path, name);
  return {text, event.getMessageId(), event.getSeverity(), TAVString()};
}

void MessageLog::logEventOf(const std::string& file, const TAVLogEvent& said) {
  const TAVLogEvent event = withNames(said);
  if (event.getMessageId() == kUnresolvedId) ++unresolved_;
  if (event.getSeverity() == tav::kSeverityError) ++errors_;
  if (keepsWarnings && event.getSeverity() == tav::kSeverityWarning)
    warnings_.push_back(withIdentifier(event, tav::maskPasswords(event.getText())));
  if (receiver) return receiver(tav::maskPasswords(file), masked(event));
  if (quiet && event.getSeverity() > tav::kSeverityError) return;
  const bool isStep = format == LogFormat::text && event.getSeverity() == tav::kSeverityStatus;
  if (isStep && !tellsSteps) return;
  if (isStep && isTerminal_)
    renewProgress(withFile(file, shown(event.getText())), true);
  else
    writeLine(file, event);
}

void MessageLog::logFailure(std::string_view message, const std::string& file) {
  std::string_view identifier;
  const std::size_t close = message.find("] ");
  if (message.starts_with('[') && close != message.npos) {
    identifier = message.substr(1, close - 1);
    message.remove_prefix(close + 2);
  }
  logEventOf(file, {message, identifier, tav::kSeverityFatal, TAVString()});
}

void MessageLog::writeLine(const std::string& file, const TAVLogEvent& event) {
  if (format == LogFormat::json) {
    nlohmann::ordered_json line;
    if (!file.empty()) line["file"] = tav::maskPasswords(file);
    line["level"] = tav::severityName(event.getSeverity());
    line["id"] = event.getMessageId().view();
    line["text"] = shortened(tav::maskPasswords(event.getText()));
    return writeError(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
  }
  std::string line = withFile(file, withIdentifier(event, shownOf(event)));
  if (hasColours(STDERR_FILENO, terminal.colours) && event.getSeverity() <= tav::kSeverityWarning)
    line = fmt::format("{}{}{}", event.getSeverity() < tav::kSeverityWarning ? kRed : kYellow, line, kPlain);
  if (progress_.empty()) return writeError(line + "\n");
  writeError(fmt::format("{}{}\n", kClearLine, line));
  renewProgress(std::string(progress_), true);
}

void MessageLog::showProgress(const std::string& step, int percent) {
  if (!isTerminal_ || !tellsSteps || quiet || format == LogFormat::json) return;
  renewProgress(fmt::format("{} {} %", shown(step), percent), false);
}

void MessageLog::renewProgress(const std::string& text, bool must) {
  const Clock::time_point now = Clock::now();
  if (!must && now - renewed_ < kRenewal) return;
  renewed_ = now;
  progress_ = text;
  const std::string time = fmt::format("  {:.1f} s", std::chrono::duration<double>(now - start_).count());
  const std::size_t width =
      sizeOfTerminal(STDERR_FILENO).columns - 1;  // the last column would make some terminals wrap
  const std::string_view shown = tav::fittingBeginning(text, width > time.size() ? width - time.size() : 0);
  writeError(fmt::format("{}{}{}", kClearLine, shown, time));
}

void MessageLog::clearProgress() {
  if (!progress_.empty()) writeError(kClearLine);
  progress_.clear();
}

}  // namespace host

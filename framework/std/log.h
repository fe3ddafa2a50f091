#pragma once

#include <optional>

#include "framework/std/string.h"

namespace tav {

/// The severities of log events, the gravest first: FATAL, ERROR, WARNING, STATUS, INFO, DEBUG.
inline constexpr std::int32_t kSeverityFatal = 1;
inline constexpr std::int32_t kSeverityError = 2;
inline constexpr std::int32_t kSeverityWarning = 3;
inline constexpr std::int32_t kSeverityStatus = 4;
inline constexpr std::int32_t kSeverityInfo = 5;
inline constexpr std::int32_t kSeverityDebug = 6;

/// The name of a severity, in capitals; empty for any other number.
TAV_API std::string_view severityName(std::int32_t severity) noexcept;
/// The severity of a name in capitals; none for any other text.
TAV_API std::optional<std::int32_t> severityOf(std::string_view name) noexcept;

}  // namespace tav

/// One record of a log.
class TAV_API TAVLogEvent {
 public:
  TAVLogEvent(TAVString text, TAVString messageId, std::int32_t severity, TAVString extra)
      : text_(std::move(text)),
        messageId_(std::move(messageId)),
        severity_(severity),
        extra_(std::move(extra)) {}

  [[nodiscard]] const TAVString& getText() const noexcept { return text_; }
  [[nodiscard]] const TAVString& getMessageId() const noexcept { return messageId_; }
  [[nodiscard]] std::int32_t getSeverity() const noexcept { return severity_; }
  /// What a host may show besides the text, such as a stack trace; usually empty.
  [[nodiscard]] const TAVString& getExtra() const noexcept { return extra_; }

 private:
  TAVString text_;
  TAVString messageId_;
  std::int32_t severity_;
  TAVString extra_;
};

/// Where a bridge reports to; a host derives from it.
class TAV_API TAVLog {
 public:
  TAVLog() = default;
  TAVLog(const TAVLog&) = default;
  TAVLog& operator=(const TAVLog&) = default;
  virtual ~TAVLog();

  /// Records the event, which lives for this call only.
  virtual void logEvent(const TAVLogEvent& event) = 0;
};

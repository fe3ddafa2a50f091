#pragma once

// What an importer says while it runs.

#include <functional>

#include "framework/std/log.h"

namespace tav {

/// Turns standard output that comes in pieces into log events. A line is "LEVEL<TAB>IDENTIFIER<TAB>text"; any
/// other that is not blank is an INFO with the whole line as its text. What is longer than kLongestLine bytes
/// is cut.
class MessageLines {
 public:
  static constexpr std::size_t kLongestLine = std::size_t{64} << 10;

  explicit MessageLines(std::function<void(const TAVLogEvent&)> report) : report_(std::move(report)) {}

  void add(std::string_view bytes);
  /// Reports a last line without an end.
  void finish();

 private:
  void keep(std::string_view part);

  std::function<void(const TAVLogEvent&)> report_;
  std::string line_;
  bool cut_ = false;
};

/// Standard error as far as it serves a failure: its beginning and its end.
class ErrorText {
 public:
  void add(std::string_view bytes);

  /// The last line that reads "[identifier] text", which is the importer's own failure; empty when there is
  /// none.
  [[nodiscard]] std::string failure() const;
  /// Its beginning as one line, without the frames of Java's stack traces; empty when nothing was said.
  [[nodiscard]] std::string summary() const;

 private:
  std::string head_;
  std::string tail_;
};

}  // namespace tav

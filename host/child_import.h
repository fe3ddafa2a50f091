#pragma once

#include <signal.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/estate_plan.h"

namespace host {

/// An import of one file by another process of this program. What that writes, messages and summary as JSON,
/// is read line by line.
class ChildImport {
 public:
  /// Starts it with these options and with these signals held back. Throws Message::processNotStarted.
  ChildImport(const EstateFile& file, const std::vector<std::string>& options, const sigset_t& signals);
  ChildImport(const ChildImport&) = delete;
  ChildImport& operator=(const ChildImport&) = delete;
  /// Ends it when it still runs, and waits for that.
  ~ChildImport();

  /// What becomes readable when it has written something or has ended.
  [[nodiscard]] int getDescriptor() const noexcept { return output_; }

  using LineSink = std::function<void(std::string_view line)>;
  /// Reads once, waiting if need be, and hands on the lines that are complete. False when there is no more to
  /// come.
  bool read(const LineSink& sink);
  void sendSignal(int signal) const noexcept;
  /// Waits for its end, and gives its status as wait() does. What it left unfinished is removed when it was
  /// killed.
  int collect();

 private:
  std::string saved_;  // the file that the model is saved in; empty when there is none
  pid_t process_ = 0;  // 0 once its end is collected
  int output_ = -1;
  std::string line_;  // the beginning of one
};

}  // namespace host

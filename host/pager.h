#pragma once

#include <sys/types.h>

#include <memory>
#include <ostream>

namespace host {

class MessageLog;

/// Standard output for an answer that may be longer than the terminal: then it goes through the pager that
/// XMLA_PAGER or PAGER names, or through less. A shorter one is written as it is.
class PagedOutput {
 public:
  explicit PagedOutput(MessageLog& log);
  PagedOutput(const PagedOutput&) = delete;
  PagedOutput& operator=(const PagedOutput&) = delete;
  /// Waits until the user has left the pager.
  ~PagedOutput();

  std::ostream& stream() noexcept { return *stream_; }
  /// Writes what is still buffered, and waits until the user has left the pager.
  void finish();
  /// Whether a pager shows it. The user may leave that before it has read everything, which is no fault.
  [[nodiscard]] bool isPaged() const noexcept;

 private:
  class Buffer;
  std::unique_ptr<Buffer> buffer_;
  std::unique_ptr<std::ostream> stream_;
};

}  // namespace host

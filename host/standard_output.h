#pragma once

#include <memory>
#include <ostream>

namespace host {

/// The one way to standard output: buffered, and a write that fails (a closed pipe, a full disk) throws
/// Message::outputNotWritten.
class StandardOutput {
 public:
  StandardOutput();
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;
  ~StandardOutput();

  std::ostream& stream() noexcept { return *stream_; }
  /// Writes what is still buffered. Without it, as after an exception, that is lost.
  void finish();

 private:
  class Buffer;
  std::unique_ptr<Buffer> buffer_;
  std::unique_ptr<std::ostream> stream_;
};

}  // namespace host

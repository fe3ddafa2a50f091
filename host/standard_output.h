#pragma once

#include <memory>
#include <ostream>
#include <string_view>

namespace host {

/// Thrown when nobody reads a pipe any longer. The program then ends without a word: whoever closed it knows.
struct ClosedPipe {};

/// Writes everything to a descriptor. Throws ClosedPipe, or Message::outputNotWritten for any other failure,
/// as a full disk.
void writeAll(int descriptor, std::string_view text);

/// The way to standard output, buffered. Throws as writeAll() does.
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

#pragma once

#include <cstdint>
#include <string>

#include "framework/api.h"

namespace tav {

/// An open regular file, read from its start as bytes. Movable, not copyable; closes itself.
class TAV_API FileReader {
 public:
  FileReader() = default;
  FileReader(FileReader&& other) noexcept;
  FileReader& operator=(FileReader&& other) noexcept;
  FileReader(const FileReader&) = delete;
  FileReader& operator=(const FileReader&) = delete;
  ~FileReader();

  /// Opens a regular file; anything else (a folder, a pipe) is refused without waiting for it. When the
  /// result is false, getError() says why in the system's words.
  bool open(const std::string& path);
  void close() noexcept;
  [[nodiscard]] bool isOpen() const noexcept { return descriptor_ >= 0; }

  /// Reads up to `capacity` bytes; fewer only at the end of the file, 0 behind it or after an error, which
  /// getError() then tells. A file that is written to between open() and its end is such an error: what was
  /// read may be parts of two files.
  std::size_t read(char* buffer, std::size_t capacity);

  /// The size in bytes that the file had when it was opened.
  [[nodiscard]] std::uint64_t getSize() const noexcept { return size_; }
  /// Why the last operation failed; empty when it did not.
  [[nodiscard]] const std::string& getError() const noexcept { return error_; }

 private:
  [[nodiscard]] bool hasChanged() const noexcept;

  int descriptor_ = -1;
  std::uint64_t size_ = 0;
  std::int64_t written_ = 0;  // when it was written to last, in nanoseconds
  std::string error_;
};

}  // namespace tav

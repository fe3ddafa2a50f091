#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>

namespace tav {

/// The bytes of one document in their order, with what is told of the progress.
class ByteSource {
 public:
  /// Gives the next bytes of the document: fewer than `capacity` only at its end.
  using Read = std::function<std::size_t(char* buffer, std::size_t capacity)>;
  /// Called when a piece of the document is done with, with the bytes read so far and the size of the
  /// document.
  using Progress = std::function<void(std::uint64_t bytesRead, std::uint64_t bytesTotal)>;

  ByteSource(Read read, std::uint64_t total, Progress progress)
      : read_(std::move(read)), total_(total), progress_(std::move(progress)) {}

  /// Fewer than `capacity` bytes only at the end of the document. What was read before, and not given back,
  /// is done with.
  std::size_t read(char* buffer, std::size_t capacity) {
    const std::size_t again = returned_.copy(buffer, capacity);
    returned_.remove_prefix(again);
    if (again == capacity) return again;
    if (again == 0) reportProgress();
    const std::size_t count = read_(buffer + again, capacity - again);
    bytesRead_ += count;
    return again + count;
  }

  /// Lets the next read() begin with these bytes, which stay where they are until then.
  void giveBack(std::string_view bytes) { returned_ = bytes; }

  /// Whether nothing has come of it.
  [[nodiscard]] bool isEmpty() const noexcept { return bytesRead_ == 0; }

  void reportProgress() const {
    if (progress_ && bytesRead_ > 0) progress_(bytesRead_, std::max(bytesRead_, total_));
  }

 private:
  Read read_;
  std::uint64_t total_;
  Progress progress_;
  std::uint64_t bytesRead_ = 0;
  std::string_view returned_;
};

}  // namespace tav

#pragma once

#include <string>
#include <string_view>

namespace host {

/// A file that lies in memory alone and has a path as long as it lives, so that whoever reads files by their
/// path can read it, other processes of the user included. Movable, not copyable.
class MemoryFile {
 public:
  /// `name` stands for it in failures. Throws Message::inputNotRead when the system refuses it.
  explicit MemoryFile(std::string name);
  MemoryFile(MemoryFile&& other) noexcept;
  MemoryFile& operator=(MemoryFile&& other) noexcept;
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();

  /// Appends; throws Message::inputNotRead when there is no memory for it.
  void write(std::string_view bytes) const;
  /// Appends what the descriptor gives until its end; throws Message::inputNotRead.
  void copyFrom(int descriptor) const;

  [[nodiscard]] std::string path() const;

 private:
  std::string name_;
  int descriptor_ = -1;
};

}  // namespace host

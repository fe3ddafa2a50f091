#pragma once

#include <filesystem>

namespace tav::bench {

/// A new folder that is removed with all it holds: in memory where there is room for `bytes`, else where
/// temporary files go.
class TemporaryFolder {
 public:
  /// Throws std::filesystem::filesystem_error when no folder can be made.
  explicit TemporaryFolder(std::uintmax_t bytes);
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// Whether the files are kept in memory and not on a disk.
  bool isInMemory() const { return inMemory_; }

 private:
  std::filesystem::path path_;
  bool inMemory_ = false;
};

}  // namespace tav::bench

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tav::test {

/// A new empty folder, removed with all that is in it at the end of its life.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// Writes a file in it and gives its path.
  [[nodiscard]] std::string write(std::string_view name, std::string_view content) const;
  /// Writes files, each "@ NAME" as a line and its content behind that, in folders as their names say. A name
  /// that leads out of this folder is passed over.
  void writeFiles(std::string_view files) const;

 private:
  std::filesystem::path path_;
};

}  // namespace tav::test

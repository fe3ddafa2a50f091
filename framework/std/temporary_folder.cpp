#include "framework/std/temporary_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "framework/std/exception.h"
#include "framework/std/interruption.h"

namespace tav {
namespace {

namespace fs = std::filesystem;

int openFolder(const std::string& path) noexcept {
  return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// Locks an open folder as long as it is; false when another has it, or it is not at its path any longer.
bool lock(int folder, const std::string& path) noexcept {
  struct stat opened {};
  struct stat there {};
  if (flock(folder, LOCK_EX | LOCK_NB) != 0) return false;
  if (fstat(folder, &opened) == 0 && lstat(path.c_str(), &there) == 0 && opened.st_ino == there.st_ino)
    return opened.st_uid == geteuid();
  errno = EWOULDBLOCK;
  return false;
}

/// Removes what is in the way of nobody; a second time, because what removing itself takes may be short for a
/// moment.
void removeFolder(const std::string& path) noexcept {
  std::error_code error;
  fs::remove_all(path, error);
  if (error) fs::remove_all(path, error);
}

[[noreturn]] void failWith(const std::string& path) {
  const std::string cause = std::generic_category().message(errno);
  rmdir(path.c_str());
  fail("TAVSTD_F0005", "Unable to make a temporary folder '" + path + "': " + cause);
}

/// Removes the folders of this name whose processes were killed.
void clear(const fs::path& parent, const std::string& beginning) {
  std::error_code error;
  fs::directory_iterator entries(parent, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const std::string path = entries->path().string();
    if (!entries->path().filename().string().starts_with(beginning)) continue;
    const int folder = openFolder(path);
    if (folder < 0) continue;
    if (lock(folder, path)) removeFolder(path);
    close(folder);
  }
}

}  // namespace

TemporaryFolder::TemporaryFolder(const TAVString& prefix) {
  const HeldSignals held;
  while (descriptor_ < 0) {
    folder_ = TAVFile::makeTempDir(prefix);
    const std::string path = folder_.getPath().str();
    descriptor_ = openFolder(path);
    if (descriptor_ < 0 && errno != ENOENT) failWith(path);
    // Until it is locked, another may take it for one that was left behind. A file system without locks lets
    // nobody think so.
    if (descriptor_ >= 0 && !lock(descriptor_, path) && errno == EWOULDBLOCK)
      close(std::exchange(descriptor_, -1));
  }
  enlistTemporary(folder_.getPath().c_str());
  clear(fs::path(folder_.getPath().str()).parent_path(), prefix.str() + "-");
}

TemporaryFolder::~TemporaryFolder() {
  removeFolder(folder_.getPath().str());
  strikeTemporary(folder_.getPath().c_str());
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace tav

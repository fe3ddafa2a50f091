#include "framework/serialization/replacing_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "framework/std/exception.h"
#include "framework/std/interruption.h"

namespace tav {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;

[[noreturn]] void failWith(const std::string& path, std::string_view cause) {
  fail("TAVXML_F0001", path + ": " + std::string(cause));
}

std::string reason() {
  return std::error_code(errno, std::generic_category()).message();
}

constexpr std::chrono::seconds kPatienceForReaders{5};
constexpr int kMostLinks = 40;  // as many as the kernel follows

/// The file that a chain of links ends at, so that the links themselves are kept; it need not be there. None
/// when the links lead in a circle.
std::optional<std::string> followed(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  if (!error) return real.string();
  // A link may lead to what has no path, as /dev/stdout does to a pipe.
  if (std::filesystem::exists(path, error)) return path;
  std::filesystem::path at = path;
  for (int links = 0; links <= kMostLinks; ++links) {
    const std::filesystem::path next = std::filesystem::read_symlink(at, error);
    if (error) return at.string();
    at = at.parent_path() / next;
  }
  return std::nullopt;
}

std::string targetOf(const std::string& path) {
  if (std::optional<std::string> target = followed(path)) return *target;
  failWith(path, "its links lead in a circle");
}

constexpr int kMostUnfinished = 1000;  // files that are written beside one target at the same time
constexpr int kPlacesCleared = 16;     // the first of them, which is where leftovers are

std::string unfinishedOf(const std::string& target, int number) {
  return target + ".unfinished-" + std::to_string(number);
}

bool isAt(int descriptor, const std::string& path) noexcept {
  struct stat opened {};
  struct stat there {};
  return fstat(descriptor, &opened) == 0 && lstat(path.c_str(), &there) == 0 &&
         opened.st_ino == there.st_ino && opened.st_dev == there.st_dev;
}

/// Makes an unfinished file, locked as long as it is open; -1 with the error in errno when it cannot be made.
int createLocked(const std::string& path) noexcept {
  const int descriptor =
      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0) return -1;
  // Where a file system has no locks, what was left behind stays; where another is about to clear this one
  // away, it is not there any longer.
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
    if (isAt(descriptor, path)) return descriptor;
  close(descriptor);
  errno = EEXIST;
  return -1;
}

/// Removes an unfinished file whose writer has ended without removing it, as after it was killed.
void clear(const std::string& path) noexcept {
  const int descriptor = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && isAt(descriptor, path)) unlink(path.c_str());
  close(descriptor);
}

void clearUnfinished(const std::string& target) {
  for (int number = 1; number <= kPlacesCleared; ++number) clear(unfinishedOf(target, number));
}

mode_t modeOfNewFiles() noexcept {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

std::string folderOf(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  return folder.empty() ? "." : folder.string();
}

void syncFolder(const std::string& folder) noexcept {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;  // some file systems do not let a folder be opened; the file itself is on disk
  fsync(descriptor);
  close(descriptor);
}

}  // namespace

/// The descriptor that is written to, with the path that it will have.
class ReplacingFile::Buffer : public std::streambuf {
 public:
  explicit Buffer(const TAVString& target)
      : target_(targetOf(target.str())),
        folder_(folderOf(target_)),
        bytes_(std::make_unique_for_overwrite<char[]>(kBufferSize)) {
    struct stat status {};
    const bool there = stat(target_.c_str(), &status) == 0;
    if (there && S_ISDIR(status.st_mode)) failWith(target_, "it is a folder");
    if (there && !S_ISREG(status.st_mode))
      openInPlace(S_ISFIFO(status.st_mode));
    else if (there)
      createInsteadOf(status);
    else
      createBeside(modeOfNewFiles());
    setp(bytes_.get(), bytes_.get() + kBufferSize);
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  ~Buffer() override {
    if (descriptor_ >= 0) close(descriptor_);
    if (temporary_.empty()) return;
    unlink(temporary_.c_str());
    strikeTemporary(temporary_.c_str());
  }

  /// Lets everything be on disk, so that nothing but the name is left to be given.
  void finish() {
    writeOut();
    if (!temporary_.empty() && fsync(descriptor_) != 0) failWith(target_, reason());
  }

  void rename() {
    if (temporary_.empty()) return;
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) failWith(target_, reason());
    leaveTemporary();
  }

  /// Gives the file its name such that this can be undone, as far as the file system lets it.
  void exchange() {
    if (temporary_.empty()) return;
    if (swap(RENAME_EXCHANGE))
      exchanged_ = true;
    else if (errno == ENOENT ? !swap(RENAME_NOREPLACE) : errno != EINVAL && errno != ENOSYS)
      failWith(target_, reason());
    else if (errno == EINVAL || errno == ENOSYS)
      rename();
    else
      made_ = true;
  }

  /// Puts back what exchange() has replaced.
  void undo() noexcept {
    if (exchanged_) swap(RENAME_EXCHANGE);
    if (made_) ::rename(target_.c_str(), temporary_.c_str());
  }

  /// Lets go of what exchange() has replaced.
  void settle() noexcept {
    if (exchanged_) unlink(temporary_.c_str());
    if (exchanged_ || made_) leaveTemporary();
    syncFolder(folder_);
  }

  void commit() {
    finish();
    rename();
    syncFolder(folder_);
  }

 protected:
  int_type overflow(int_type character) override {
    writeOut();
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    *pptr() = traits_type::to_char_type(character);
    pbump(1);
    return character;
  }

  int sync() override {
    writeOut();
    return 0;
  }

 private:
  void openInPlace(bool isPipe) {
    descriptor_ = isPipe ? openPipe() : open(target_.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor_ < 0) failWith(target_, reason());
  }

  /// To open a pipe in the usual way would wait for a reader without a word and without end.
  [[nodiscard]] int openPipe() const {
    const auto end = std::chrono::steady_clock::now() + kPatienceForReaders;
    for (;;) {
      const int descriptor = open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
      if (descriptor >= 0) fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
      if (descriptor >= 0 || errno != ENXIO) return descriptor;
      if (std::chrono::steady_clock::now() > end) failWith(target_, "it is a pipe that nothing reads");
      std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
  }

  /// The new file belongs to whom the old one belonged to, as far as the system lets it. It never runs with
  /// the rights of its owner: what is in it now was written by others.
  void createInsteadOf(const struct stat& old) {
    createBeside(S_IRUSR | S_IWUSR);
    const bool foreign = old.st_uid != geteuid() || old.st_gid != getegid();
    // Only an administrator may give a file away, but whoever is in a group may give it to that.
    if (foreign && fchown(descriptor_, old.st_uid, old.st_gid) != 0)
      static_cast<void>(fchown(descriptor_, geteuid(), old.st_gid) == 0);
    static_cast<void>(fchmod(descriptor_, old.st_mode & 0777));
  }

  void createBeside(mode_t mode) {
    const HeldSignals held;
    clearUnfinished(target_);
    for (int number = 1; descriptor_ < 0; ++number) {
      std::string path = unfinishedOf(target_, number);
      descriptor_ = createLocked(path);
      if (descriptor_ >= 0) temporary_ = std::move(path);
      if (descriptor_ < 0 && (errno != EEXIST || number == kMostUnfinished)) failWith(target_, reason());
    }
    enlistTemporary(temporary_.c_str());
    // A file system without modes refuses this; the file is then as that file system makes files.
    static_cast<void>(fchmod(descriptor_, mode));
  }

  bool swap(unsigned flags) noexcept {
    return renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), flags) == 0;
  }

  void leaveTemporary() noexcept {
    strikeTemporary(temporary_.c_str());
    temporary_.clear();
  }

  void writeOut() {
    const char* from = pbase();
    while (from != pptr()) {
      const ssize_t written = write(descriptor_, from, static_cast<std::size_t>(pptr() - from));
      if (written > 0) {
        from += written;
      } else if (errno != EINTR) {
        const std::string cause = reason();
        setp(bytes_.get(), bytes_.get() + kBufferSize);
        failWith(target_, cause);
      }
    }
    setp(bytes_.get(), bytes_.get() + kBufferSize);
  }

  std::string target_;
  std::string folder_;     // of the target; once that is in place, nothing may take memory any longer
  std::string temporary_;  // empty once it is in place, or when the target is written to directly
  std::unique_ptr<char[]> bytes_;
  int descriptor_ = -1;
  bool exchanged_ = false;
  bool made_ = false;
};

ReplacingFile::ReplacingFile(const TAVString& target)
    : buffer_(std::make_unique<Buffer>(target)), stream_(std::make_unique<std::ostream>(buffer_.get())) {
  stream_->exceptions(std::ios::badbit);  // hands the buffer's own exception on
}

ReplacingFile::~ReplacingFile() = default;

std::ostream& ReplacingFile::stream() noexcept {
  return *stream_;
}

void ReplacingFile::commit() {
  buffer_->commit();
}

void ReplacingFile::commitAll(std::span<ReplacingFile* const> files) {
  for (ReplacingFile* file : files) file->buffer_->finish();
  std::size_t done = 0;
  try {
    for (; done < files.size(); ++done) files[done]->buffer_->exchange();
  } catch (...) {
    while (done > 0) files[--done]->buffer_->undo();
    throw;
  }
  for (ReplacingFile* file : files) file->buffer_->settle();
}

void removeUnfinished(const TAVString& target) {
  if (const std::optional<std::string> file = followed(target.str())) clearUnfinished(*file);
}

}  // namespace tav

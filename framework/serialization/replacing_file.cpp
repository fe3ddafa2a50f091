#include "framework/serialization/replacing_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
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

/// What the names of unfinished files begin with. The process is named so that they can be told from those of
/// others when it was killed.
std::string temporaryOf(const std::string& target, pid_t process) {
  return target + "." + std::to_string(process) + ".";
}

mode_t modeOfNewFiles() noexcept {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void syncFolderOf(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;  // some file systems do not let a folder be opened; the file itself is on disk
  fsync(descriptor);
  close(descriptor);
}

}  // namespace

/// The descriptor that is written to, with the path that it will have.
class ReplacingFile::Buffer : public std::streambuf {
 public:
  explicit Buffer(const TAVString& target) : target_(targetOf(target.str())), bytes_(kBufferSize) {
    struct stat status {};
    const bool there = stat(target_.c_str(), &status) == 0;
    if (there && S_ISDIR(status.st_mode)) failWith(target_, "it is a folder");
    if (there && !S_ISREG(status.st_mode))
      openInPlace(S_ISFIFO(status.st_mode));
    else if (there)
      createInsteadOf(status);
    else
      createBeside(modeOfNewFiles());
    setp(bytes_.data(), bytes_.data() + bytes_.size());
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  ~Buffer() override {
    if (descriptor_ >= 0) close(descriptor_);
    if (temporary_.empty()) return;
    unlink(temporary_.c_str());
    strikeTemporary(temporary_.c_str());
  }

  void commit() {
    writeOut();
    if (temporary_.empty()) return;
    if (fsync(descriptor_) != 0) failWith(target_, reason());
    if (close(std::exchange(descriptor_, -1)) != 0) failWith(target_, reason());
    if (rename(temporary_.c_str(), target_.c_str()) != 0) failWith(target_, reason());
    strikeTemporary(temporary_.c_str());
    temporary_.clear();
    syncFolderOf(target_);
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
    temporary_ = temporaryOf(target_, getpid()) + "XXXXXX";
    descriptor_ = mkostemp(temporary_.data(), O_CLOEXEC);
    if (descriptor_ < 0) {
      temporary_.clear();
      failWith(target_, reason());
    }
    enlistTemporary(temporary_.c_str());
    // A file system without modes refuses this; the file is then as that file system makes files.
    static_cast<void>(fchmod(descriptor_, mode));
  }

  void writeOut() {
    const char* from = pbase();
    while (from != pptr()) {
      const ssize_t written = write(descriptor_, from, static_cast<std::size_t>(pptr() - from));
      if (written > 0) {
        from += written;
      } else if (errno != EINTR) {
        const std::string cause = reason();
        setp(bytes_.data(), bytes_.data() + bytes_.size());
        failWith(target_, cause);
      }
    }
    setp(bytes_.data(), bytes_.data() + bytes_.size());
  }

  std::string target_;
  std::string temporary_;  // empty once it is in place, or when the target is written to directly
  std::vector<char> bytes_;
  int descriptor_ = -1;
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

void removeUnfinished(const TAVString& target, pid_t process) {
  const std::optional<std::string> file = followed(target.str());
  if (!file) return;
  const std::filesystem::path beginning = temporaryOf(*file, process);
  const std::filesystem::path folder = beginning.parent_path();
  std::error_code error;
  std::filesystem::directory_iterator entries(folder.empty() ? "." : folder, error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    if (entries->path().filename().string().starts_with(beginning.filename().string()))
      unlink(entries->path().c_str());
  }
}

}  // namespace tav

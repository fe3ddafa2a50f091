#include "framework/std/file_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace tav {

namespace {

std::string lastError() {
  return std::generic_category().message(errno);
}

std::int64_t writtenAt(const struct stat& status) noexcept {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  return status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
}

}  // namespace

FileReader::FileReader(FileReader&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      size_(other.size_),
      written_(other.written_),
      error_(std::move(other.error_)) {}

FileReader& FileReader::operator=(FileReader&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  std::swap(size_, other.size_);
  std::swap(written_, other.written_);
  std::swap(error_, other.error_);
  return *this;
}

FileReader::~FileReader() {
  close();
}

bool FileReader::open(const std::string& path) {
  close();
  error_.clear();
  // A path with a NUL inside would silently name another file.
  if (path.find('\0') != std::string::npos) error_ = "the path holds a NUL character";
  // Without O_NONBLOCK, opening a pipe waits until somebody writes to it.
  if (error_.empty()) descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (error_.empty() && descriptor_ < 0) error_ = lastError();
  if (!error_.empty()) return false;
  struct stat status {};
  if (fstat(descriptor_, &status) != 0)
    error_ = lastError();
  else if (S_ISDIR(status.st_mode))
    error_ = "it is a directory";
  else if (!S_ISREG(status.st_mode))
    error_ = "it is not a regular file";
  size_ = static_cast<std::uint64_t>(status.st_size);
  written_ = writtenAt(status);
  if (!error_.empty()) close();
  return isOpen();
}

void FileReader::close() noexcept {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
}

std::size_t FileReader::read(char* buffer, std::size_t capacity) {
  std::size_t done = 0;
  while (isOpen() && done < capacity) {
    const ssize_t count = ::read(descriptor_, buffer + done, capacity - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) error_ = lastError();
    if (count == 0 && hasChanged()) error_ = "the file changed while it was read";
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  return error_.empty() ? done : 0;
}

bool FileReader::hasChanged() const noexcept {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) return false;
  return static_cast<std::uint64_t>(status.st_size) != size_ || writtenAt(status) != written_;
}

}  // namespace tav

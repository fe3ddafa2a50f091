#include "host/inputs/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "messages/message.h"

namespace host {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;

[[noreturn]] void failToRead(const std::string& name) {
  tav::fail(tav::Message::inputNotRead, {name, std::generic_category().message(errno)});
}

}  // namespace

MemoryFile::MemoryFile(std::string name)
    : name_(std::move(name)), descriptor_(memfd_create("definition", MFD_CLOEXEC)) {
  if (descriptor_ < 0) failToRead(name_);
}

MemoryFile::MemoryFile(MemoryFile&& other) noexcept
    : name_(std::move(other.name_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

MemoryFile& MemoryFile::operator=(MemoryFile&& other) noexcept {
  std::swap(name_, other.name_);
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

MemoryFile::~MemoryFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

void MemoryFile::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) failToRead(name_);
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void MemoryFile::copyFrom(int descriptor) const {
  std::vector<char> chunk(kChunk);
  for (;;) {
    const ssize_t count = read(descriptor, chunk.data(), chunk.size());
    if (count < 0 && errno != EINTR) failToRead(name_);
    if (count == 0) return;
    if (count > 0) write({chunk.data(), static_cast<std::size_t>(count)});
  }
}

std::string MemoryFile::path() const {
  // With the number of this process, not "self": the importer of tabular definitions is another one.
  return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(descriptor_);
}

}  // namespace host

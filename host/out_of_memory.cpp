#include "host/out_of_memory.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

#include "framework/std/interruption.h"
#include "host/command.h"
#include "messages/message.h"

namespace host {
namespace {

/// Text in a buffer of fixed size.
class Line {
 public:
  Line& operator<<(std::string_view text) noexcept {
    for (const char c : text.substr(0, bytes_.size() - size_)) bytes_[size_++] = c;
    return *this;
  }

  void write() const noexcept {
    std::string_view rest(bytes_.data(), size_);
    while (!rest.empty()) {
      const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
      if (written > 0)
        rest.remove_prefix(static_cast<std::size_t>(written));
      else if (errno != EINTR)
        return;  // there is no place left to tell it
    }
  }

 private:
  std::array<char, 256> bytes_{};
  std::size_t size_ = 0;
};

/// What the program exits with when memory runs out where nothing can catch it.
int codeAtEnd = kFailed;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): for the handler

/// Memory may run out where nothing can catch it: before main() begins, while libraries are loaded.
[[noreturn]] void endProgram() noexcept {
  try {
    if (std::current_exception()) throw;
  } catch (const std::bad_alloc&) {
    tav::endUnfinishedWork();
    tellOutOfMemory(false);
    _exit(codeAtEnd);
  } catch (...) {
    // A defect, of which a debugger or a dump should find the place.
  }
  std::abort();
}

/// Runs before anything else of the program and of its libraries.
void watchForEnd() {
  std::set_terminate(endProgram);
}
[[gnu::section(".preinit_array"), gnu::used]] void (*const kFirst)() = watchForEnd;

}  // namespace

void exitWithWhenOutOfMemory(int code) noexcept {
  codeAtEnd = code;
}

void tellOutOfMemory(bool json) noexcept {
  const tav::MessageRow& row = tav::messageRows()[static_cast<std::size_t>(tav::Message::outOfMemory)];
  Line line;
  if (json)
    line << R"({"level":"fatal","id":")" << row.identifier << R"(","text":")" << row.text << "\"}\n";
  else
    line << "[" << row.identifier << "] " << row.text << "\n";
  line.write();
}

}  // namespace host

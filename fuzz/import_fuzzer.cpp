// Any bytes, taken for an XML definition, come to a model that keeps the laws, or to one exception that names
// the file.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "bridge/import.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/std/exception.h"
#include "fuzz/require.h"
#include "tests/support/model_laws.h"

using tav::fuzz::require;

namespace {

struct NoLog : TAVLog {
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

/// A file in memory, with a path.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor_(memfd_create("fuzz", 0)) {
    while (size > 0) {
      const ssize_t written = write(descriptor_, data, size);
      if (written <= 0) std::abort();
      data += written;
      size -= static_cast<std::size_t>(written);
    }
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }

  [[nodiscard]] TAVString path() const { return TAVString("/proc/self/fd/" + std::to_string(descriptor_)); }

 private:
  int descriptor_;
};

class WithDetails : public tav::HostObserver {
 public:
  bool wantsDetails() override { return true; }
};

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile file(data, size);
  NoLog log;
  WithDetails observer;
  try {
    const tav::Owned<TAVStoreModel> model(execAsImport("fuzz", TAVFile(file.path()), &log, false));
    const std::string broken = tav::test::brokenLaw({*model, observer.details()});
    require(broken.empty(), broken.c_str());
  } catch (const TAVException& failure) {
    require(failure.getMessage().startsWith("[TAV", true) && failure.getMessage().find(file.path()) > 0,
            failure.what());
  }
  return 0;
}

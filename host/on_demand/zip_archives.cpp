#include <zip.h>

#include <stdexcept>

#include "framework/api.h"
#include "host/inputs/archive.h"

namespace host {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 30;   // the largest known have some ten megabytes
constexpr std::uint64_t kFreeBytes = std::uint64_t{16} << 20;  // that may grow at any rate
constexpr std::uint64_t kMostGrowth = 200;                     // definitions grow some twenty times

struct CloseEntry {
  void operator()(zip_file_t* entry) const noexcept { zip_fclose(entry); }
};

[[noreturn]] void fail(const char* cause) {
  throw std::runtime_error(cause);
}

class ZipArchive final : public Archive {
 public:
  explicit ZipArchive(const std::string& path);

  [[nodiscard]] bool holds(const std::string& entry) const override;
  [[nodiscard]] std::vector<std::string> entries() const override;
  [[nodiscard]] std::string read(const std::string& entry) const override;

 private:
  struct Close {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
  };
  std::unique_ptr<zip_t, Close> archive_;
};

ZipArchive::ZipArchive(const std::string& path) {
  int code = 0;
  archive_.reset(zip_open(path.c_str(), ZIP_RDONLY, &code));
  if (archive_) return;
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  const std::string cause = zip_error_strerror(&error);
  zip_error_fini(&error);
  fail(cause.c_str());
}

bool ZipArchive::holds(const std::string& entry) const {
  return zip_name_locate(archive_.get(), entry.c_str(), 0) >= 0;
}

std::vector<std::string> ZipArchive::entries() const {
  std::vector<std::string> names;
  const zip_int64_t count = zip_get_num_entries(archive_.get(), 0);
  for (zip_int64_t i = 0; i < count; ++i)
    if (const char* name = zip_get_name(archive_.get(), static_cast<zip_uint64_t>(i), 0))
      names.emplace_back(name);
  return names;
}

std::string ZipArchive::read(const std::string& entry) const {
  zip_stat_t size;
  zip_stat_init(&size);
  const std::unique_ptr<zip_file_t, CloseEntry> file(zip_fopen(archive_.get(), entry.c_str(), 0));
  if (!file || zip_stat(archive_.get(), entry.c_str(), 0, &size) != 0) fail(zip_strerror(archive_.get()));
  std::string bytes;
  for (;;) {
    const std::size_t had = bytes.size();
    bytes.resize(had + kChunk);
    const zip_int64_t count = zip_fread(file.get(), bytes.data() + had, kChunk);
    if (count < 0) fail(zip_error_strerror(zip_file_get_error(file.get())));
    bytes.resize(had + static_cast<std::size_t>(count));
    if (count == 0) return bytes;
    if (bytes.size() > kMostBytes ||
        (bytes.size() > kFreeBytes && bytes.size() / kMostGrowth > size.comp_size))
      fail("its definition is unpacked to more than a definition has");
  }
}

class ZipArchives final : public Archives {
 public:
  [[nodiscard]] std::unique_ptr<Archive> open(const std::string& path) const override {
    return std::make_unique<ZipArchive>(path);
  }
  [[nodiscard]] std::string libraryVersion() const override { return zip_libzip_version(); }
};

}  // namespace
}  // namespace host

extern "C" TAV_API const host::Archives* xmlaArchives() {
  static const host::ZipArchives kArchives;
  return &kArchives;
}

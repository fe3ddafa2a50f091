#include "framework/std/file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "framework/std/exception.h"
#include "framework/std/file_reader.h"
#include "framework/std/text.h"
#include "framework/std/utf8.h"

using tav::appendUtf8;

namespace {

constexpr std::size_t kChunk = std::size_t{64} << 10;
constexpr int kReadMode = 1;
constexpr char32_t kReplacement = 0xFFFD;

// Turns UTF-16 that comes in pieces of any size into UTF-8.
class Utf16Decoder {
 public:
  explicit Utf16Decoder(bool bigEndian) : bigEndian_(bigEndian) {}

  void decode(std::string_view bytes, std::string& text) {
    for (const char byte : bytes) {
      const auto b = static_cast<unsigned char>(byte);
      if (half_ >= 0)
        unit(bigEndian_ ? static_cast<char32_t>(half_ << 8 | b) : static_cast<char32_t>(b << 8 | half_),
             text);
      half_ = half_ >= 0 ? -1 : b;
    }
  }

  void finish(std::string& text) {
    if (high_ != 0 || half_ >= 0) appendUtf8(text, kReplacement);
    high_ = 0;
    half_ = -1;
  }

 private:
  void unit(char32_t unit, std::string& text) {
    const bool low = unit >= 0xDC00 && unit <= 0xDFFF;
    if (high_ != 0 && low) {
      appendUtf8(text, 0x10000 + ((high_ - 0xD800) << 10) + (unit - 0xDC00));
      high_ = 0;
      return;
    }
    if (high_ != 0) appendUtf8(text, kReplacement);
    high_ = unit >= 0xD800 && unit <= 0xDBFF ? unit : 0;
    if (high_ == 0) appendUtf8(text, low ? kReplacement : unit);
  }

  bool bigEndian_;
  int half_ = -1;      // the first byte of a unit whose second is still to come
  char32_t high_ = 0;  // the first unit of a pair whose second is still to come
};

}  // namespace

// The text of an open file, as UTF-8, a chunk at a time.
class TAVFile::Text {
 public:
  explicit Text(tav::FileReader file) : file_(std::move(file)), chunk_(kChunk) {}

  bool hasMore() {
    while (at_ == text_.size() && !ended_) refill();
    return at_ < text_.size();
  }

  [[nodiscard]] const std::string& error() const noexcept { return file_.getError(); }

  std::string line(std::size_t limit) {
    std::string line;
    while (hasMore()) {
      const std::string_view rest = std::string_view(text_).substr(at_);
      const std::size_t end = rest.find('\n');
      std::size_t count = std::min(end, rest.size());
      if (count > limit - line.size()) {
        count = tav::beginningOf(rest, limit - line.size()).size();
        at_ += count;
        return line.append(rest.substr(0, count));
      }
      line.append(rest.substr(0, count));
      at_ += count;
      if (end == std::string_view::npos) continue;
      ++at_;
      if (line.ends_with('\r')) line.pop_back();
      break;
    }
    return line;
  }

 private:
  void refill() {
    std::string_view bytes(chunk_.data(), file_.read(chunk_.data(), chunk_.size()));
    text_.clear();
    at_ = 0;
    if (!started_) skipMark(bytes);
    started_ = true;
    ended_ = bytes.empty();
    if (!utf16_)
      text_ = bytes;
    else if (!ended_)
      utf16_->decode(bytes, text_);
    else
      utf16_->finish(text_);
  }

  // The first chunk holds the whole mark, because the reader gives fewer bytes only at the end of the file.
  void skipMark(std::string_view& bytes) {
    const bool big = bytes.starts_with("\xFE\xFF");
    if (bytes.starts_with("\xEF\xBB\xBF")) {
      bytes.remove_prefix(3);
    } else if (big || bytes.starts_with("\xFF\xFE")) {
      bytes.remove_prefix(2);
      utf16_ = std::make_unique<Utf16Decoder>(big);
    }
  }

  tav::FileReader file_;
  std::vector<char> chunk_;
  std::unique_ptr<Utf16Decoder> utf16_;
  std::string text_;
  std::size_t at_ = 0;
  bool started_ = false;
  bool ended_ = false;
};

TAVFile::TAVFile() = default;
TAVFile::TAVFile(TAVString path) : path_(std::move(path)) {}
TAVFile::TAVFile(const TAVFile& other) : path_(other.path_) {}
TAVFile::TAVFile(TAVFile&& other) noexcept = default;
TAVFile& TAVFile::operator=(TAVFile&& other) noexcept = default;
TAVFile::~TAVFile() = default;

TAVFile& TAVFile::operator=(const TAVFile& other) {
  if (this == &other) return *this;
  path_ = other.path_;
  close();
  return *this;
}

bool TAVFile::exists() const {
  struct stat status {};
  return path_.find(std::string_view("\0", 1)) < 0 && stat(path_.c_str(), &status) == 0 &&
         S_ISREG(status.st_mode);
}

bool TAVFile::open(int mode) {
  close();
  tav::FileReader file;
  if (mode != kReadMode || !file.open(path_.str())) {
    error_ = file.getError();
    return false;
  }
  text_ = std::make_unique<Text>(std::move(file));
  return true;
}

TAVString TAVFile::getError() const {
  return text_ ? TAVString(text_->error()) : error_;
}

bool TAVFile::isEndOfFile() {
  return !text_ || !text_->hasMore();
}

TAVString TAVFile::getFullLine(std::int64_t limit) {
  if (!text_) return {};
  return text_->line(limit <= 0 ? std::string::npos
                                : static_cast<std::size_t>(std::max<std::int64_t>(limit, 4)));
}

void TAVFile::close() {
  text_.reset();
  error_ = {};
}

TAVFile TAVFile::makeTempDir(const TAVString& prefix) {
  const char* configured = std::getenv("TMPDIR");  // NOLINT(concurrency-mt-unsafe): nothing here sets it
  const TAVFile parent(configured && *configured != '\0' ? configured : "/tmp");
  std::string path = parent.getFile(prefix + "-XXXXXX").getPath().str();
  if (!mkdtemp(path.data()))
    tav::fail("TAVSTD_F0001", "Unable to make a temporary folder in '" + parent.getPath() +
                                  "': " + std::generic_category().message(errno));
  return TAVFile(path);
}

TAVFile TAVFile::getFile(const TAVString& name) const {
  if (path_.empty() || path_.endsWith("/", true)) return TAVFile(path_ + name);
  return TAVFile(path_ + "/" + name);
}

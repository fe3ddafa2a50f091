#include "host/inputs/file_text.h"

#include "framework/std/file_reader.h"
#include "framework/std/utf8.h"

namespace host {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kChunk = std::size_t{1} << 20;

constexpr char32_t kFirstHalf = 0xD800;
constexpr char32_t kSecondHalf = 0xDC00;
constexpr char32_t kBehindHalves = 0xE000;
constexpr char32_t kFirstOfPairs = 0x10000;
constexpr char32_t kReplacement = 0xFFFD;

/// Units of UTF-16 by their place.
class Units {
 public:
  Units(std::string_view bytes, bool bigEnd) : bytes_(bytes), high_(bigEnd ? 0 : 1) {}

  [[nodiscard]] std::size_t size() const noexcept { return bytes_.size() / 2; }
  [[nodiscard]] char32_t get(std::size_t i) const noexcept {
    const auto byte = [&](std::size_t at) {
      return static_cast<char32_t>(static_cast<unsigned char>(bytes_[at]));
    };
    return byte(2 * i + high_) << 8U | byte(2 * i + 1 - high_);
  }
  [[nodiscard]] bool isSecondHalf(std::size_t i) const noexcept {
    return i < size() && get(i) >= kSecondHalf && get(i) < kBehindHalves;
  }

 private:
  std::string_view bytes_;
  std::size_t high_;  // where in a unit its higher byte is
};

std::string fromUtf16(std::string_view bytes, bool bigEnd) {
  const Units units(bytes, bigEnd);
  std::string text;
  text.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t c = units.get(i);
    if (c >= kFirstHalf && c < kSecondHalf && units.isSecondHalf(i + 1))
      c = kFirstOfPairs + ((c - kFirstHalf) << 10U) + (units.get(++i) - kSecondHalf);
    else if (c >= kFirstHalf && c < kBehindHalves)
      c = kReplacement;
    tav::appendUtf8(text, c);
  }
  return text;
}

}  // namespace

std::string asUtf8(std::string bytes) {
  const std::string_view start(bytes);
  if (start.starts_with(kUtf8Mark)) return bytes.substr(kUtf8Mark.size());
  if (start.starts_with("\xFF\xFE")) return fromUtf16(start.substr(2), false);
  if (start.starts_with("\xFE\xFF")) return fromUtf16(start.substr(2), true);
  // XML and JSON begin with a character of ASCII, whose other byte is 0.
  if (bytes.size() >= 2 && bytes[0] != '\0' && bytes[1] == '\0') return fromUtf16(bytes, false);
  if (bytes.size() >= 2 && bytes[0] == '\0' && bytes[1] != '\0') return fromUtf16(bytes, true);
  return bytes;
}

FileText readFileText(const std::string& path) {
  tav::FileReader file;
  if (!file.open(path)) return {{}, file.getError()};
  std::string bytes;
  // One byte more than it had shows its end, or that it has grown.
  for (std::size_t size = 0, step = file.getSize() + 1;; step = kChunk) {
    bytes.resize(size + step);
    const std::size_t count = file.read(bytes.data() + size, step);
    bytes.resize(size += count);
    if (count < step) break;
  }
  if (!file.getError().empty()) return {{}, file.getError()};
  return {asUtf8(std::move(bytes)), {}};
}

}  // namespace host

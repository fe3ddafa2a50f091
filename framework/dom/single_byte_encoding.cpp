#include "framework/dom/single_byte_encoding.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace tav {

namespace {

class Converter {
 public:
  explicit Converter(const char* from) : handle_(iconv_open(kTarget, from)) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (isOpen()) iconv_close(handle_);
  }

  [[nodiscard]] bool isOpen() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

  /// Whether the byte is a whole character or none; then `character` is that character or -1.
  bool convert(char byte, int& character) {
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);  // forgets what earlier bytes have switched to
    std::array<char, 4> result{};
    char* in = &byte;
    char* out = result.data();
    std::size_t inLeft = 1, outLeft = result.size();
    if (iconv(handle_, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
      character = -1;
      return errno == EILSEQ;
    }
    std::uint32_t code = 0;
    std::memcpy(&code, result.data(), result.size());
    character = static_cast<int>(code);
    return outLeft == 0;
  }

 private:
  static constexpr const char* kTarget = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? "UTF-32LE" : "UTF-32BE";
  iconv_t handle_;
};

}  // namespace

bool mapSingleByteEncoding(const char* name, std::span<int, 256> characters) {
  Converter converter(name);
  if (!converter.isOpen()) return false;
  for (std::size_t i = 0; i < characters.size(); ++i)
    if (!converter.convert(static_cast<char>(i), characters[i])) return false;
  return true;
}

}  // namespace tav

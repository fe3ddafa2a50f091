#pragma once

// Texts that are kept compressed, in the format of zlib (RFC 1950).

#include <array>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>

struct z_stream_s;

namespace tav {

/// Takes a text, piece by piece, and keeps it compressed.
class DeflatedText : public std::streambuf {
 public:
  DeflatedText();
  DeflatedText(const DeflatedText&) = delete;
  DeflatedText& operator=(const DeflatedText&) = delete;
  ~DeflatedText() override;

  /// All that was written. Nothing may be written afterwards.
  std::string finish();

 protected:
  int_type overflow(int_type character) override;
  int sync() override;

 private:
  void deflate(int flush);

  std::unique_ptr<z_stream_s> stream_;
  std::array<char, std::size_t{1} << 16> pending_{};
  std::string deflated_;
};

/// The text that was compressed to these bytes. Throws std::runtime_error, with the cause, when they are
/// damaged.
std::string inflateText(std::string_view bytes);

}  // namespace tav

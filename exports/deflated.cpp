#include "exports/deflated.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <stdexcept>

namespace tav {
namespace {

// Documents repeat themselves: a higher level takes three times as long for a tenth of the size.
constexpr int kLevel = 3;

Bytef* bytesOf(const char* text) {
  // zlib does not write to what it reads, but says so only when it is built to.
  return reinterpret_cast<Bytef*>(const_cast<char*>(text));
}

}  // namespace

DeflatedText::DeflatedText() : stream_(std::make_unique<z_stream>()) {
  if (deflateInit(stream_.get(), kLevel) != Z_OK) throw std::bad_alloc();
  setp(pending_.data(), pending_.data() + pending_.size());
}

DeflatedText::~DeflatedText() {
  deflateEnd(stream_.get());
}

void DeflatedText::deflate(int flush) {
  stream_->next_in = bytesOf(pbase());
  stream_->avail_in = static_cast<uInt>(pptr() - pbase());
  std::array<char, std::size_t{1} << 16> out;
  do {
    stream_->next_out = bytesOf(out.data());
    stream_->avail_out = static_cast<uInt>(out.size());
    ::deflate(stream_.get(), flush);  // has no way to fail with room for what it gives
    deflated_.append(out.data(), out.size() - stream_->avail_out);
  } while (stream_->avail_out == 0);
  setp(pending_.data(), pending_.data() + pending_.size());
}

DeflatedText::int_type DeflatedText::overflow(int_type character) {
  deflate(Z_NO_FLUSH);
  if (!traits_type::eq_int_type(character, traits_type::eof())) sputc(traits_type::to_char_type(character));
  return traits_type::not_eof(character);
}

int DeflatedText::sync() {
  deflate(Z_NO_FLUSH);
  return 0;
}

std::string DeflatedText::finish() {
  deflate(Z_FINISH);
  return std::move(deflated_);
}

std::string inflateText(std::string_view bytes) {
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) throw std::bad_alloc();
  const std::unique_ptr<z_stream, int (*)(z_stream*)> end(&stream, inflateEnd);
  std::string text;
  std::array<char, std::size_t{1} << 16> out;
  int state = Z_OK;
  while (state == Z_OK) {
    if (stream.avail_in == 0) {
      const std::size_t size = std::min(bytes.size(), std::size_t{1} << 30);
      stream.next_in = bytesOf(bytes.data());
      stream.avail_in = static_cast<uInt>(size);
      bytes.remove_prefix(size);
    }
    stream.next_out = bytesOf(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    state = inflate(&stream, Z_NO_FLUSH);
    text.append(out.data(), out.size() - stream.avail_out);
  }
  if (state == Z_STREAM_END) return text;
  throw std::runtime_error(state == Z_BUF_ERROR ? "the compressed text ends too soon"
                                                : "the compressed text is damaged");
}

}  // namespace tav

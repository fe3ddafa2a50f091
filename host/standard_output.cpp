#include "host/standard_output.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <vector>

#include "messages/message.h"

namespace host {

void writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written > 0)
      text.remove_prefix(static_cast<std::size_t>(written));
    else if (errno == EPIPE)
      throw ClosedPipe();
    else if (errno != EINTR)
      tav::fail(tav::Message::outputNotWritten, {std::generic_category().message(errno)});
  }
}

class StandardOutput::Buffer : public std::streambuf {
 public:
  Buffer() : bytes_(std::size_t{1} << 16) { setp(bytes_.data(), bytes_.data() + bytes_.size()); }

 protected:
  int_type overflow(int_type character) override {
    sync();
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    *pptr() = traits_type::to_char_type(character);
    pbump(1);
    return character;
  }

  int sync() override {
    const std::string_view text(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(bytes_.data(), bytes_.data() + bytes_.size());
    writeAll(STDOUT_FILENO, text);
    return 0;
  }

 private:
  std::vector<char> bytes_;
};

StandardOutput::StandardOutput()
    : buffer_(std::make_unique<Buffer>()), stream_(std::make_unique<std::ostream>(buffer_.get())) {
  stream_->exceptions(std::ios::badbit);  // hands the buffer's own exception on
}

StandardOutput::~StandardOutput() = default;

void StandardOutput::finish() {
  stream_->flush();
}

}  // namespace host

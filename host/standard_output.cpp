#include "host/standard_output.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <vector>

#include "framework/std/exception.h"

namespace host {

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
    const char* from = pbase();
    const char* const end = pptr();
    setp(bytes_.data(), bytes_.data() + bytes_.size());
    while (from != end) {
      const ssize_t written = write(STDOUT_FILENO, from, static_cast<std::size_t>(end - from));
      if (written > 0)
        from += written;
      else if (errno != EINTR)
        tav::fail("XMLABRIDGE_F0001", "Standard output cannot be written: " +
                                          std::error_code(errno, std::generic_category()).message());
    }
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

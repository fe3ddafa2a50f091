#pragma once

// What ends an import: one exception type for the framework and its plug-ins.

#include <exception>

#include "framework/std/string.h"

/// An error with a message for the user, usually "[identifier] text", and a text that describes the call
/// stack it was raised on. Thrown by value; a host catches it by reference.
class TAV_API TAVException : public std::exception {
 public:
  TAVException(TAVString message, TAVString stackTrace);
  TAVException(const TAVException&);
  ~TAVException() override;

  [[nodiscard]] const TAVString& getMessage() const noexcept { return message_; }
  [[nodiscard]] const TAVString& getStackTrace() const noexcept { return stackTrace_; }
  [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }

 private:
  TAVString message_;
  TAVString stackTrace_;
};

/// The calling thread's stack, a line a frame, innermost first.
TAV_API TAVString buildStackTrace();

namespace tav {

/// Throws a TAVException whose message is "[identifier] text", as the plug-ins' own messages read.
[[noreturn]] TAV_API void fail(std::string_view identifier, std::string_view text);

}  // namespace tav

#pragma once

// Where a command's result goes: standard output, or a file that is replaced as a whole; and what is told of
// it.

#include <functional>
#include <ostream>
#include <string>

#include "exports/answers/shown_text.h"
#include "host/message_log.h"

namespace host {

class MessageLog;

/// Lets `write` write to the file `output`, or to standard output when that is "-". The file is replaced when
/// everything is written; a failure throws and leaves it as it was.
void writeOutput(const std::string& output, const std::function<void(std::ostream& out)>& write);

/// The same for an answer, which on a terminal is wrapped, coloured and paged as `log.terminal` says; a file
/// gets it plain.
void writeAnswer(const std::string& output, MessageLog& log,
                 const std::function<void(std::ostream& out, const tav::TextStyle& style)>& write);

/// Tells of work that is done and gives its exit code. When that cannot be written the work stays, and the
/// failure and the exit code say so.
int tellOfWork(int code, MessageLog& log, void (*tell)(const void* what), const void* what);
/// The same for a callable, which takes no memory: there may be none left when the work is done.
template <class Tell> int tellOfWork(int code, MessageLog& log, const Tell& tell) {
  return tellOfWork(
      code, log, [](const void* what) { (*static_cast<const Tell*>(what))(); }, &tell);
}

}  // namespace host

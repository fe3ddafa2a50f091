#include "host/output.h"

#include <unistd.h>

#include <new>

#include "framework/serialization/replacing_file.h"
#include "framework/std/exception.h"
#include "host/command.h"
#include "host/message_log.h"
#include "host/out_of_memory.h"
#include "host/pager.h"
#include "host/standard_output.h"

namespace host {

void writeOutput(const std::string& output, const std::function<void(std::ostream& out)>& write) {
  if (output == "-") {
    StandardOutput out;
    write(out.stream());
    out.finish();
  } else {
    tav::ReplacingFile out{TAVString(output)};
    write(out.stream());
    out.commit();
  }
}

int tellOfWork(int code, MessageLog& log, void (*tell)(const void* what), const void* what) {
  // A failure of the work counts more.
  const int untold = code == kDone || code == kIncomplete ? kUntold : code;
  exitWithWhenOutOfMemory(untold);
  try {
    try {
      tell(what);
      return code;
    } catch (const TAVException& error) {
      log.logFailure(error.getMessage());
    }
  } catch (const std::bad_alloc&) {
    tellOutOfMemory(log.format == LogFormat::json);
  }
  return untold;
}

void writeAnswer(const std::string& output, MessageLog& log,
                 const std::function<void(std::ostream& out, const tav::TextStyle& style)>& write) {
  if (output != "-") return writeOutput(output, [&](std::ostream& out) { write(out, {}); });
  const tav::TextStyle style = styleOfOutput(log.terminal);
  if (!log.terminal.pager || !isTerminal(STDOUT_FILENO))
    return writeOutput(output, [&](std::ostream& out) { write(out, style); });
  PagedOutput out(log);
  try {
    write(out.stream(), style);
    out.finish();
  } catch (const ClosedPipe&) {
    if (!out.isPaged()) throw;
  }
}

}  // namespace host

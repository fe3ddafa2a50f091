#include "host/signals.h"

#include <unistd.h>

#include <csignal>

#include "framework/std/interruption.h"
#include "host/command.h"

namespace host {
namespace {

// Only what is safe at any moment: no allocation, no lock, no output through a buffer.
extern "C" void endBySignal(int signal) {
  tav::endUnfinishedWork();
  _exit(kSignalBase + signal);
}

}  // namespace

void handleSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  // A write beyond the limit on the size of files then fails, with a cause that can be told.
  std::signal(SIGXFSZ, SIG_IGN);
  // A parent may have it ignored: then nobody could tell how a process that the program started has ended.
  std::signal(SIGCHLD, SIG_DFL);
  for (const int signal : tav::kEndingSignals) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action.sa_handler = endBySignal;
    sigfillset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace host

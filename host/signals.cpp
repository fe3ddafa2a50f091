#include "host/signals.h"

#include <unistd.h>

#include <csignal>
#include <initializer_list>

#include "framework/serialization/replacing_file.h"
#include "host/command.h"

namespace host {
namespace {

// Only what is safe at any moment: no allocation, no lock, no output through a buffer.
extern "C" void endBySignal(int signal) {
  tav::removeTemporaryFiles();
  _exit(kSignalBase + signal);
}

}  // namespace

void handleSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action.sa_handler = endBySignal;
    sigfillset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace host

#include "host/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace host {

bool isTerminal(int descriptor) {
  return isatty(descriptor) == 1;
}

TerminalSize sizeOfTerminal(int descriptor) {
  constexpr TerminalSize kUsual{80, 24};
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) != 0) return kUsual;
  return {size.ws_col > 0 ? size.ws_col : kUsual.columns, size.ws_row > 0 ? size.ws_row : kUsual.rows};
}

bool hasColours(int descriptor, ColourChoice choice) {
  if (choice != ColourChoice::automatic) return choice == ColourChoice::always;
  if (!isTerminal(descriptor)) return false;
  const char* refused = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  return (!refused || !*refused) && terminal && std::string_view(terminal) != "dumb";
}

tav::TextStyle styleOfOutput(const TerminalOptions& options) {
  return {.width = isTerminal(STDOUT_FILENO) ? sizeOfTerminal(STDOUT_FILENO).columns : 0,
          .colours = hasColours(STDOUT_FILENO, options.colours)};
}

}  // namespace host

#pragma once

// What the terminal can do that the program writes to, if it writes to one.

#include <cstddef>
#include <cstdint>

#include "exports/answers/shown_text.h"

namespace host {

enum class ColourChoice : std::uint8_t { automatic, always, never };

/// What the user wants of terminals.
struct TerminalOptions {
  ColourChoice colours = ColourChoice::automatic;
  bool pager = true;
};

struct TerminalSize {
  std::size_t columns;
  std::size_t rows;
};

/// Whether a descriptor is a terminal.
bool isTerminal(int descriptor);

/// The size of the terminal behind a descriptor; 80 columns and 24 rows where it does not tell.
TerminalSize sizeOfTerminal(int descriptor);

/// Whether text that goes to a descriptor has colours. Automatically that is a terminal that is not dumb, and
/// nobody has set NO_COLOR.
bool hasColours(int descriptor, ColourChoice choice);

/// How text for people is shown on standard output: wrapped at the width of a terminal, a file gets it whole.
tav::TextStyle styleOfOutput(const TerminalOptions& options);

}  // namespace host

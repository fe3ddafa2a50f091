#pragma once

// Where a command's result goes: standard output, or a file that is replaced as a whole.

#include <functional>
#include <ostream>
#include <string>

namespace host {

/// Lets `write` write to the file `output`, or to standard output when that is "-". The file is replaced when
/// everything is written; a failure throws and leaves it as it was.
void writeOutput(const std::string& output, const std::function<void(std::ostream& out)>& write);

}  // namespace host

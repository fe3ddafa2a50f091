#pragma once

namespace host {

/// From now on SIGINT, SIGTERM and SIGHUP, unless the program's parent has them ignored, end the processes
/// that the program started, remove temporary files and end the program with 128 + the signal's number; a
/// closed pipe is an error of the write.
void handleSignals();

}  // namespace host

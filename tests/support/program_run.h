#pragma once

#include <string>
#include <vector>

namespace tav::test {

/// Runs a program without a shell, its output and errors in files; its exit code, or -1 when it did not end
/// by itself.
int runProgram(std::vector<std::string> words, const std::string& out, const std::string& errors);

}  // namespace tav::test

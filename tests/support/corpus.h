#pragma once

// Tests whose cases are data: a file of inputs, each with what it should give.
//
//   === name of the case
//   input
//   ---
//   expected
//
// Input and expected text are the lines between the marks, without the last line end. Lines in front of the
// first case are a comment.

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace tav::test {

struct CorpusCase {
  std::string name;
  std::string input;
  std::string expected;
  int line;  // of its "===" line, from 1
};

/// A file under tests/, and a file or folder that tests may read.
std::filesystem::path testFile(std::string_view name);

/// The whole file as bytes; a test failure and an empty text when it cannot be read.
std::string readFile(const std::filesystem::path& path);

/// The cases of a file under tests/; a test failure when it has none.
std::vector<CorpusCase> loadCorpus(std::string_view file);

/// Compares, for every case, what `show` makes of the input with what is expected. A failure names file, line
/// and case. With UPDATE_GOLDENS=1 in the environment the file is rewritten instead: read the difference.
void checkCorpus(std::string_view file, const std::function<std::string(const std::string& input)>& show);

/// `text` with the two characters \n, \t, \r, \\ and \xHH turned into the one that they stand for, so that a
/// corpus can hold any byte.
std::string unescape(std::string_view text);
/// The reverse: controls, backslashes and, with `ascii`, every byte above 0x7E escaped.
std::string escape(std::string_view text, bool ascii = false);

}  // namespace tav::test

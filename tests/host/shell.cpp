#include "tests/host/shell.h"

#include <sys/wait.h>

#include <cstdlib>

namespace tav::test {

std::string runCommands(const std::string& commands,
                        const std::function<void(const TemporaryFolder& folder)>& prepare) {
  const TemporaryFolder folder;
  prepare(folder);
  const TemporaryFolder results;
  const std::string out = (results.path() / "out").string();
  const std::string err = (results.path() / "err").string();
  const std::string script = results.write("script", commands);
  const int status = std::system(("cd '" + folder.path().string() +
                                  "' && unset NO_COLOR && PATH='" PROGRAM_FOLDER
                                  ":'\"$PATH\" SOURCE_DATE_EPOCH=0 TERM=xterm sh '" +
                                  script + "' >'" + out + "' 2>'" + err + "' </dev/null")
                                     .c_str());
  std::string shown = readFile(out);
  if (const std::string errors = readFile(err); !errors.empty()) shown += "[stderr]\n" + errors;
  return shown + "[exit " + std::to_string(WEXITSTATUS(status)) + "]";
}

}  // namespace tav::test

#include <gtest/gtest.h>

#include "host/inputs/project_document.h"
#include "tests/support/corpus.h"

namespace {

/// The files of a case, "@ NAME" and the lines behind it each, and the document that the project "x.dwproj"
/// of them is put together to.
std::string assemble(const std::string& files) {
  const tav::test::TemporaryFolder folder;
  for (std::size_t at = files.find("@ "); at != files.npos;) {
    const std::size_t line = files.find('\n', at);
    const std::size_t next = files.find("\n@ ", at);
    const std::size_t end = next == files.npos ? files.size() : next;
    static_cast<void>(
        folder.write(files.substr(at + 2, line - at - 2), files.substr(line + 1, end - line - 1)));
    at = next == files.npos ? next : next + 1;
  }
  host::MessageLog log;
  const host::Project project = host::readProject((folder.path() / "x.dwproj").string(), log);
  return tav::test::readFile(host::assembleProject(project, log).path());
}

TEST(Project, Documents) {
  tav::test::checkCorpus("host/projects.txt", assemble);
}

}  // namespace

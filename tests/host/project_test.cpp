#include <gtest/gtest.h>

#include "host/inputs/project_document.h"
#include "tests/support/corpus.h"

namespace {

/// The files of a case, "@ NAME" and the lines behind it each, and the document that the project "x.dwproj"
/// of them is put together to.
std::string assemble(const std::string& files) {
  const tav::test::TemporaryFolder folder;
  folder.writeFiles(files);
  host::MessageLog log;
  const host::Project project = host::readProject((folder.path() / "x.dwproj").string(), log);
  return tav::test::readFile(host::assembleProject(project, log).path());
}

TEST(Project, Documents) {
  tav::test::checkCorpus("host/projects.txt", assemble);
}

}  // namespace

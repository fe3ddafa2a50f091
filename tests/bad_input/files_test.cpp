#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/support/checked_import.h"

namespace {

/// While it lives, a process of the administrator's has the rights of a user who owns nothing.
class AnotherUser {
 public:
  AnotherUser() { isOther_ = geteuid() == 0 && seteuid(kNobody) == 0; }
  AnotherUser(const AnotherUser&) = delete;
  AnotherUser& operator=(const AnotherUser&) = delete;
  ~AnotherUser() {
    if (isOther_ && seteuid(0) != 0) std::abort();
  }

 private:
  static constexpr uid_t kNobody = 65534;
  bool isOther_;
};

/// What an import of FILE says, in a folder where the shell commands were run.
std::string importAfter(const std::string& commands) {
  const tav::test::TemporaryFolder folder;
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  const std::string script = "cd '" + folder.path().string() + "' && " + commands;
  if (std::system(script.c_str()) != 0) return "the commands failed";
  const AnotherUser user;
  return tav::test::importFile(folder.path() / "FILE").error;
}

TEST(BadFiles, EachIsOneClearError) {
  if (geteuid() == 0) {
    const AnotherUser user;
    if (geteuid() == 0) GTEST_SKIP() << "this administrator may read everything and cannot be another user";
  }
  tav::test::checkCorpus("bad_input/files.txt", importAfter);
}

}  // namespace

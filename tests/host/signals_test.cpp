#include "host/signals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "framework/serialization/replacing_file.h"
#include "tests/support/corpus.h"

namespace {

TEST(Signals, EndTheProgramAndLeaveNoTemporaryFile) {
  const tav::test::TemporaryFolder folder;
  const std::string target = folder.write("model.xml", "before");
  const auto interrupted = [&](int signal) {
    host::handleSignals();
    tav::ReplacingFile file{TAVString(target)};
    file.stream() << "half of it" << std::flush;
    std::raise(signal);
  };
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGXCPU})
    EXPECT_EXIT(interrupted(signal), testing::ExitedWithCode(128 + signal), "");
  EXPECT_EQ(tav::test::readFile(target), "before");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

}  // namespace

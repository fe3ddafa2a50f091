#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "framework/serialization/model_writer.h"
#include "framework/serialization/replacing_file.h"
#include "framework/std/exception.h"
#include "framework/std/interruption.h"
#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

std::size_t filesIn(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

std::string failureOfSaving(const TAVModel& model, const fs::path& path) {
  try {
    tav::saveModel(model, TAVString(path.string()));
    return "saved";
  } catch (const TAVException& failure) {
    return failure.getMessage().str();
  }
}

/// Limits the size of files while it lives, so that a write fails as on a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, SIG_DFL);
  }

 private:
  rlimit before_{};
};

class Saving : public testing::Test {
 protected:
  tav::Owned<TAVStoreModel> model_ = tav::make<TAVStoreModel>("m");
  tav::test::TemporaryFolder folder_;
};

TEST_F(Saving, AFailedWriteLeavesTheOldFileAndNothingElse) {
  for (int i = 0; i < 1000; ++i)  // more than one buffer, so that it fails in the middle
    model_->addDesignPackageUniqueName(tav::make<TAVDesignPackage>(std::string(4000, 'x')), '/');
  const fs::path path = folder_.write("model.xml", "old");
  {
    const FileSizeLimit limit(1U << 20);
    EXPECT_EQ(failureOfSaving(*model_, path), "[TAVXML_F0001] " + path.string() + ": File too large");
  }
  EXPECT_EQ(tav::test::readFile(path), "old");
  EXPECT_EQ(filesIn(folder_.path()), 1U);
  EXPECT_EQ(failureOfSaving(*model_, path), "saved");
  EXPECT_EQ(filesIn(folder_.path()), 1U);
}

TEST_F(Saving, AReplacedFileKeepsItsModeButNotTheRightsOfItsOwner) {
  const fs::path path = folder_.write("model.xml", "old");
  ASSERT_EQ(chmod(path.c_str(), 06754), 0);
  EXPECT_EQ(failureOfSaving(*model_, path), "saved");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms{0754});
}

TEST_F(Saving, AnAdministratorLeavesAFileToItsOwner) {
  constexpr uid_t kOther = 12345;
  const fs::path path = folder_.write("model.xml", "old");
  if (chown(path.c_str(), kOther, kOther) != 0) GTEST_SKIP() << "only an administrator can give files away";
  EXPECT_EQ(failureOfSaving(*model_, path), "saved");
  struct stat status {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, kOther);
  EXPECT_EQ(status.st_gid, kOther);
}

TEST_F(Saving, APipeIsWrittenToWhenSomethingReadsIt) {
  const fs::path path = folder_.path() / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::string read;
  std::thread reader([&] { read = tav::test::readFile(path); });
  EXPECT_EQ(failureOfSaving(*model_, path), "saved");
  reader.join();
  EXPECT_NE(read.find("TAVStoreModel"), read.npos);
}

TEST_F(Saving, APipeThatNothingReadsIsSaid) {
  const fs::path path = folder_.path() / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(failureOfSaving(*model_, path),
            "[TAVXML_F0001] " + path.string() + ": it is a pipe that nothing reads");
}

TEST_F(Saving, WhatCannotBeWrittenToIsSaidInWords) {
  const fs::path missing = folder_.path() / "missing" / "model.xml";
  EXPECT_EQ(failureOfSaving(*model_, missing),
            "[TAVXML_F0001] " + missing.string() + ": No such file or directory");
  EXPECT_EQ(failureOfSaving(*model_, folder_.path()),
            "[TAVXML_F0001] " + folder_.path().string() + ": it is a folder");
  EXPECT_EQ(failureOfSaving(*model_, "/dev/full"), "[TAVXML_F0001] /dev/full: No space left on device");
  EXPECT_EQ(filesIn(folder_.path()), 0U);
}

TEST_F(Saving, ADeviceIsWrittenToAndStaysADevice) {
  EXPECT_EQ(failureOfSaving(*model_, "/dev/null"), "saved");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(Saving, ALinkAndTheModeOfTheOldFileAreKept) {
  const fs::path path = folder_.write("model.xml", "old");
  chmod(path.c_str(), 0604);
  fs::create_symlink("model.xml", folder_.path() / "link.xml");
  EXPECT_EQ(failureOfSaving(*model_, folder_.path() / "link.xml"), "saved");
  EXPECT_TRUE(fs::is_symlink(folder_.path() / "link.xml"));
  EXPECT_NE(tav::test::readFile(path), "old");
  EXPECT_EQ(static_cast<int>(fs::status(path).permissions()), 0604);
}

TEST_F(Saving, DanglingLinksMakeTheFileThatTheyName) {
  fs::create_directory(folder_.path() / "models");
  const fs::path link = folder_.path() / "link.xml";
  fs::create_symlink("models/next.xml", link);
  fs::create_symlink("../models/made.xml", folder_.path() / "models" / "next.xml");
  {
    tav::ReplacingFile unfinished(TAVString(link.string()));
    EXPECT_EQ(filesIn(folder_.path()), 2U) << "it is written in the folder where it will be";
    EXPECT_EQ(filesIn(folder_.path() / "models"), 2U);
  }
  EXPECT_FALSE(fs::exists(link));
  EXPECT_EQ(failureOfSaving(*model_, link), "saved");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_TRUE(fs::is_symlink(folder_.path() / "models" / "next.xml"));
  EXPECT_TRUE(fs::is_regular_file(folder_.path() / "models" / "made.xml"));

  const fs::path nowhere = folder_.path() / "nowhere.xml";
  fs::create_symlink("missing/model.xml", nowhere);
  EXPECT_EQ(
      failureOfSaving(*model_, nowhere),
      "[TAVXML_F0001] " + (folder_.path() / "missing/model.xml").string() + ": No such file or directory");
}

TEST_F(Saving, LinksInACircleAreAnError) {
  const fs::path link = folder_.path() / "a.xml";
  fs::create_symlink("b.xml", link);
  fs::create_symlink("a.xml", folder_.path() / "b.xml");
  EXPECT_EQ(failureOfSaving(*model_, link),
            "[TAVXML_F0001] " + link.string() + ": its links lead in a circle");
  tav::removeUnfinished(TAVString(link.string()));
  EXPECT_TRUE(fs::is_symlink(link));
}

TEST_F(Saving, AnInterruptedProcessCanRemoveItsUnfinishedFiles) {
  tav::ReplacingFile file(TAVString((folder_.path() / "a.xml").string()));
  EXPECT_EQ(filesIn(folder_.path()), 1U);
  tav::endUnfinishedWork();
  EXPECT_EQ(filesIn(folder_.path()), 0U);
}

}  // namespace

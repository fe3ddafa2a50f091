#include "framework/std/file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>

#include "framework/std/exception.h"
#include "tests/support/corpus.h"

namespace {

using tav::test::TemporaryFolder;

std::string linesOf(TAVFile file, std::int64_t limit) {
  std::string shown;
  file.open(1);
  while (!file.isEndOfFile()) {
    if (!shown.empty()) shown += "\n";
    shown += "[" + tav::test::escape(file.getFullLine(limit).str(), true) + "]";
  }
  EXPECT_EQ(file.getFullLine(limit), "");
  return shown;
}

TEST(File, LinesCorpus) {
  const TemporaryFolder folder;
  tav::test::checkCorpus("std/lines.txt", [&](const std::string& input) {
    const std::size_t end = input.find('\n');
    const std::string bytes = end == std::string::npos ? "" : tav::test::unescape(input.substr(end + 1));
    return linesOf(TAVFile(folder.write("text", bytes)), std::stoll(input));
  });
}

// Lines around the size of the reader's chunk, in both encodings, so that every mark and character is cut
// once.
TEST(File, LinesAreTheSameWhereverAChunkEnds) {
  const TemporaryFolder folder;
  for (int before = 65528; before <= 65540; ++before) {
    const std::string padding(static_cast<std::size_t>(before), 'x');
    EXPECT_EQ(linesOf(TAVFile(folder.write("8", padding + "\xE2\x82\xAC\r\nb\r\n")), 0),
              "[" + padding + "\\xE2\\x82\\xAC]\n[b]");
    std::string wide = "\xFF\xFE";
    for (const char c : padding.substr(0, padding.size() / 2)) (wide += c) += '\0';
    wide.append("\x3D\xD8\x00\xDE\r\0\n\0b\0", 10);
    EXPECT_EQ(linesOf(TAVFile(folder.write("16", wide)), 0),
              "[" + padding.substr(0, padding.size() / 2) + "\\xF0\\x9F\\x98\\x80]\n[b]");
  }
}

TEST(File, WhatCannotBeOpenedIsAtItsEnd) {
  const TemporaryFolder folder;
  const std::string pipe = (folder.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string text = folder.write("text", "one\n");
  std::filesystem::create_symlink(folder.path() / "missing", folder.path() / "dangling");
  for (const std::string& path :
       {std::string(), folder.path().string(), pipe, (folder.path() / "missing").string(),
        (folder.path() / "dangling").string(), text + "/below", text + std::string(1, '\0') + "x"}) {
    TAVFile file{TAVString(path)};
    EXPECT_FALSE(file.exists()) << path;
    EXPECT_TRUE(file.isEndOfFile()) << path;
    EXPECT_FALSE(file.open(1)) << path;
    EXPECT_TRUE(file.isEndOfFile()) << path;
    EXPECT_EQ(file.getFullLine(0), "") << path;
  }
  TAVFile file{TAVString(text)};
  EXPECT_TRUE(file.exists());
  EXPECT_FALSE(file.open(2)) << "a mode that does not exist";
}

TEST(File, ACopyIsAClosedHandleOnTheSamePath) {
  const TemporaryFolder folder;
  TAVFile file(folder.write("text", "one\ntwo\n"));
  file.open(1);
  EXPECT_EQ(file.getFullLine(0), "one");
  TAVFile copy(file);
  EXPECT_EQ(copy.getPath(), file.getPath());
  EXPECT_TRUE(copy.isEndOfFile());
  copy.open(1);
  EXPECT_EQ(copy.getFullLine(0), "one") << "it begins at the start";
  EXPECT_EQ(file.getFullLine(0), "two") << "and leaves the original where it was";
  copy = file;
  EXPECT_TRUE(copy.isEndOfFile());
  file.open(1);
  EXPECT_EQ(file.getFullLine(0), "one") << "opening again begins again";
}

TEST(File, TheFirstPieceOfALongLineNeedsNoMoreThanThat) {
  const TemporaryFolder folder;
  const std::string path = folder.write("long", "  {");
  std::filesystem::resize_file(path, std::uintmax_t{4} << 30);  // 4 GB without a line end, not on the disk
  TAVFile file{TAVString(path)};
  ASSERT_TRUE(file.open(1));
  EXPECT_EQ(file.getFullLine(4096).length(), 4096);
  EXPECT_EQ(file.getFullLine(4096).length(), 4096);
}

TEST(File, TemporaryFoldersAreNewAndPrivate) {
  const TemporaryFolder folder;
  setenv("TMPDIR", folder.path().c_str(), 1);
  const TAVFile first = TAVFile::makeTempDir("prefix");
  const TAVFile second = TAVFile::makeTempDir("prefix");
  EXPECT_NE(first.getPath(), second.getPath());
  struct stat status {};
  ASSERT_EQ(stat(first.getPath().c_str(), &status), 0);
  EXPECT_TRUE(S_ISDIR(status.st_mode));
  EXPECT_EQ(status.st_mode & 0777, 0700U);
  EXPECT_TRUE(first.getPath().startsWith((folder.path() / "prefix").string(), true)) << first.getPath().str();
  EXPECT_EQ(first.getFile("main.xml").getPath(), first.getPath() + "/main.xml");

  setenv("TMPDIR", (folder.path() / "missing").c_str(), 1);
  EXPECT_THROW(TAVFile::makeTempDir("prefix"), TAVException);
  unsetenv("TMPDIR");
}

}  // namespace

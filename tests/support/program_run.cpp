#include "tests/support/program_run.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace tav::test {

int runProgram(std::vector<std::string> words, const std::string& out, const std::string& errors) {
  posix_spawn_file_actions_t files{};
  posix_spawn_file_actions_init(&files);
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, out.c_str(), kFlags, 0600);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), kFlags, 0600);
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  setenv("LC_ALL", "C.UTF-8", 1);  // as the launcher starts it: file names are UTF-8
  pid_t child = 0;
  const int failure = posix_spawn(&child, arguments[0], &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  EXPECT_EQ(failure, 0) << words[0];
  int status = 0;
  if (failure != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

}  // namespace tav::test

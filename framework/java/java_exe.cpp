#include "framework/java/java_exe.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <vector>

#include "framework/java/child_process.h"
#include "framework/std/exception.h"
#include "framework/std/file.h"

namespace {

constexpr const char* kSetting = "XMLA_BRIDGE_JAVA";
constexpr std::string_view kReleaseKey = "JAVA_VERSION=\"";
constexpr std::string_view kVersionKey = " version \"";

std::string variable(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nothing here sets it
  return value ? value : "";
}

/// "17.0.15" is 17, "1.8.0_292" is 8.
std::optional<int> majorVersion(std::string_view text) {
  if (text.starts_with("1.")) text.remove_prefix(2);
  int version = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), version);
  return error == std::errc() ? std::optional(version) : std::nullopt;
}

/// The version in the text that stands right behind a key.
std::optional<int> versionBehind(std::string_view key, std::string_view text) {
  const std::size_t at = text.find(key);
  return at == text.npos ? std::nullopt : majorVersion(text.substr(at + key.size()));
}

/// From the file that stands beside every installed Java: that is faster than running it.
std::optional<int> releasedVersion(const std::string& java) {
  std::error_code error;
  const std::filesystem::path place = std::filesystem::canonical(java, error);
  if (error) return std::nullopt;
  TAVFile release((place.parent_path().parent_path() / "release").string());
  release.open(1);
  while (!release.isEndOfFile()) {
    const TAVString line = release.getFullLine(kReleaseKey.size() + 32);
    if (line.startsWith(kReleaseKey, true)) return versionBehind(kReleaseKey, line);
  }
  return std::nullopt;
}

std::optional<int> saidVersion(const std::string& java) {
  static constexpr std::size_t kMost = 4096;
  std::string said;
  const auto keep = [&said](std::string_view bytes) {
    said += bytes.substr(0, kMost - std::min(kMost, said.size()));
  };
  tav::ChildProcess(java, {"-version"}).wait(keep, keep);
  return versionBehind(kVersionKey, said);
}

bool isExecutable(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error) && access(path.c_str(), X_OK) == 0;
}

std::vector<std::string> candidates() {
  std::vector<std::string> paths;
  if (const std::string home = variable("JAVA_HOME"); !home.empty()) paths.push_back(home + "/bin/java");
  std::string_view rest;
  const std::string path = variable("PATH");
  for (rest = path; !rest.empty();) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    // An empty or relative entry would run a program of whatever folder the user is in.
    if (rest.starts_with('/')) paths.push_back(std::string(rest.substr(0, end)) + "/java");
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return paths;
}

[[noreturn]] void failToFind(int leastVersion, const std::string& found) {
  tav::fail("TAVJAVA_F0002", "Reading a tabular definition needs Java " + std::to_string(leastVersion) +
                                 " or later, but " + found +
                                 "; install the package openjdk-17-jre-headless, or let the environment "
                                 "variable " +
                                 kSetting + " name the java program.");
}

/// What is wrong with a Java; empty when it will do.
std::string faultOf(const std::string& java, int leastVersion) {
  std::optional<int> version = releasedVersion(java);
  if (!version) version = saidVersion(java);
  if (!version) return "the version of '" + java + "' cannot be told";
  if (*version < leastVersion) return "'" + java + "' is version " + std::to_string(*version);
  return "";
}

}  // namespace

TAVString TAVJavaExe::find(JavaVersion leastVersion) {
  if (const std::string set = variable(kSetting); !set.empty()) {
    if (!isExecutable(set)) failToFind(leastVersion, "'" + set + "' is no program");
    if (const std::string fault = faultOf(set, leastVersion); !fault.empty()) failToFind(leastVersion, fault);
    return set;
  }
  std::string fault = "there is no Java";
  bool first = true;
  for (const std::string& java : candidates()) {
    if (!isExecutable(java)) continue;
    std::string found = faultOf(java, leastVersion);
    if (found.empty()) return java;
    if (first) fault = std::move(found);
    first = false;
  }
  failToFind(leastVersion, fault);
}

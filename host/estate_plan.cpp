#include "host/estate_plan.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "framework/std/string.h"
#include "host/command.h"
#include "host/inputs/folder.h"
#include "messages/message.h"

namespace host {
namespace {

namespace fs = std::filesystem;

fs::path plainPath(const std::string& path) {
  const fs::path plain = fs::absolute(path).lexically_normal();
  return plain.has_filename() ? plain : plain.parent_path();
}

/// An input with the name, so far, of its model.
class Candidate {
 public:
  Candidate(std::string input, const fs::path& path)
      : input_(std::move(input)), path_(path), unused_(path.parent_path()), name_(path.stem().string()) {}

  [[nodiscard]] const std::string& input() const { return input_; }
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] std::string folder() const { return path_.parent_path().string(); }

  void keepExtension() { name_ = path_.filename().string(); }
  void number(std::size_t number) { name_ += "-" + std::to_string(number); }
  /// Puts the name of the next outer folder in front; whether there is one.
  bool addFolder() {
    const std::string folder = unused_.filename().string();
    if (folder.empty()) return false;
    name_.insert(0, folder + "-");
    unused_ = unused_.parent_path();
    return true;
  }

 private:
  std::string input_;
  fs::path path_;
  fs::path unused_;  // the folders whose names are not yet a part of the name
  std::string name_;
};

using Candidates = std::vector<Candidate>;
using Groups = std::unordered_map<std::string, std::vector<Candidate*>>;

template <class Key> Groups groupBy(Candidates& candidates, Key key) {
  Groups groups;
  for (Candidate& candidate : candidates) groups[tav::foldCase(key(candidate))].push_back(&candidate);
  return groups;
}

std::string nameOf(const Candidate& candidate) {
  return candidate.name();
}

void keepExtensions(Candidates& candidates) {
  for (auto& [place, group] : groupBy(candidates, [](const Candidate& candidate) {
         return candidate.folder() + '/' + candidate.name();
       })) {
    if (group.size() == 1) continue;
    for (Candidate* candidate : group) candidate->keepExtension();
  }
}

bool shareFolder(const std::vector<Candidate*>& group) {
  return std::all_of(group.begin(), group.end(), [&](const Candidate* candidate) {
    return candidate->folder() == group.front()->folder();
  });
}

void addFolders(Candidates& candidates) {
  for (bool changed = true; changed;) {
    changed = false;
    for (auto& [name, group] : groupBy(candidates, nameOf)) {
      if (group.size() == 1 || shareFolder(group)) continue;
      for (Candidate* candidate : group) changed |= candidate->addFolder();
    }
  }
}

void numberEquals(Candidates& candidates) {
  std::unordered_set<std::string> taken;
  for (const Candidate& candidate : candidates) taken.insert(tav::foldCase(candidate.name()));
  std::unordered_map<std::string, std::size_t> counts;
  for (Candidate& candidate : candidates) {
    std::size_t& count = counts[tav::foldCase(candidate.name())];
    if (++count == 1) continue;
    const std::string base = tav::foldCase(candidate.name());
    while (!taken.insert(base + "-" + std::to_string(count)).second) ++count;
    candidate.number(count);
  }
}

/// The inputs, with every definition below it in the place of a folder.
PlannedInputs withoutFolders(const std::vector<std::string>& inputs, MessageLog& log) {
  PlannedInputs planned;
  for (const std::string& input : inputs) {
    checkInput(input);
    if (input == "-") throw UsageError("INPUT", "standard input is imported with -o");
    std::error_code ignored;  // what cannot be asked for is told by the import
    if (!fs::is_directory(input, ignored)) {
      planned.definitions.push_back(input);
      continue;
    }
    const std::vector<std::string> found = definitionsBelow(input);
    if (found.empty()) {
      log.logEvent(
          tav::messageEvent(tav::Message::foreignInput, {input, "a folder without a definition below it"}));
    } else {
      planned.folders.push_back(input);
    }
    planned.definitions.insert(planned.definitions.end(), found.begin(), found.end());
  }
  return planned;
}

Candidates candidatesFor(const std::vector<std::string>& definitions) {
  Candidates candidates;
  for (const std::string& input : definitions) candidates.emplace_back(input, plainPath(input));
  return candidates;
}

/// Finds a file by its path and by what it is, so that links are seen through.
class KnownFiles {
 public:
  void add(const std::string& path) {
    byPath_.emplace(plainPath(path).string(), path);
    if (const auto id = identify(path)) byId_.emplace(*id, path);
  }
  /// The path that the same file was added under, or null.
  [[nodiscard]] const std::string* find(const std::string& path) const {
    if (const auto known = byPath_.find(plainPath(path).string()); known != byPath_.end())
      return &known->second;
    const auto id = identify(path);
    const auto known = id ? byId_.find(*id) : byId_.end();
    return known == byId_.end() ? nullptr : &known->second;
  }

 private:
  using Id = std::pair<dev_t, ino_t>;
  static std::optional<Id> identify(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return Id(status.st_dev, status.st_ino);
  }

  std::unordered_map<std::string, std::string> byPath_;
  std::map<Id, std::string> byId_;
};

void checkOutputs(const std::vector<EstateFile>& files) {
  KnownFiles inputs;
  for (const EstateFile& file : files) inputs.add(file.input);
  for (const EstateFile& file : files) {
    if (const std::string* input = inputs.find(file.output))
      throw UsageError("--out-dir", "the output " + file.output + " would replace the input " + *input);
  }
}

}  // namespace

PlannedInputs planInputs(const std::vector<std::string>& inputs, MessageLog& log) {
  PlannedInputs planned = withoutFolders(inputs, log);
  std::unordered_set<std::string> paths;
  std::vector<std::string> unique;
  for (std::string& input : planned.definitions) {
    if (paths.insert(plainPath(input).string()).second)
      unique.push_back(std::move(input));
    else
      log.logEventOf(input, tav::messageEvent(tav::Message::duplicateInput));
  }
  planned.definitions = std::move(unique);
  return planned;
}

std::vector<EstateFile> planOutputs(const std::vector<std::string>& inputs, const std::string& folder,
                                    std::string_view extension) {
  if (folder.empty()) throw UsageError("--out-dir", "the name of the folder is empty");
  Candidates candidates = candidatesFor(inputs);
  keepExtensions(candidates);
  addFolders(candidates);
  numberEquals(candidates);
  std::vector<EstateFile> files;
  files.reserve(candidates.size());
  for (const Candidate& candidate : candidates)
    files.push_back(
        {candidate.input(), (fs::path(folder) / (candidate.name() + std::string(extension))).string()});
  checkOutputs(files);
  return files;
}

void makeFolder(const std::string& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) tav::fail(tav::Message::folderNotMade, {folder, error.message()});
}

}  // namespace host

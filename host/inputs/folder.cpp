#include "host/inputs/folder.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "framework/std/string.h"
#include "host/inputs/content.h"
#include "host/inputs/extension.h"
#include "host/inputs/listing.h"
#include "host/inputs/semantic_model.h"

namespace host {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> projectsIn(const Listing& listing) {
  std::vector<std::string> found;
  for (const fs::path& file : listing.files)
    if (hasExtension(file.string(), kProjectExtension)) found.push_back(file.string());
  return found;
}

/// What cannot be read is none.
bool isSavedModel(const std::string& path) {
  try {
    return tav::isSavedModel(path);
  } catch (const TAVException&) {
    return false;
  }
}

class FolderWalk {
 public:
  FolderWalk(const std::string& folder, bool savedModels) : savedModels_(savedModels), open_{folder} {}

  std::vector<std::string> walk() {
    while (!open_.empty()) {
      const fs::path folder = std::move(open_.back());
      open_.pop_back();
      if (isNew(folder)) visit(folder);
    }
    std::sort(found_.begin(), found_.end());
    return std::move(found_);
  }

 private:
  /// Whether a file or folder was not met before, by this or another path.
  bool isNew(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && met_.emplace(status.st_dev, status.st_ino).second;
  }

  void visit(const fs::path& folder) {
    const auto model = findFolderModel(folder.string());
    if (model && isSemanticModelName(folder.string())) {
      found_.push_back(folder.string());
      return;
    }
    const bool tmdl = model && !hasExtension(model->path, ".bim");
    const Listing listing(folder);
    const std::vector<std::string> projects = projectsIn(listing);
    if (tmdl || !listing.cause.empty()) found_.push_back(folder.string());
    for (const fs::path& file : listing.files) visitFile(file);
    // The last is visited first.
    for (auto folderPlace = listing.folders.rbegin(); folderPlace != listing.folders.rend(); ++folderPlace) {
      const fs::path& child = *folderPlace;
      const std::string name = child.filename().string();
      const bool built = !projects.empty() && (name == "bin" || name == "obj");
      const bool read = tmdl && (name == "definition" || name == "TMDLScripts" ||
                                 folder / name == model->path || model->path == folder);
      if (!name.starts_with('.') && !hasExtension(name, ".report") && !built && !read) open_.push_back(child);
    }
  }

  void visitFile(const fs::path& file) {
    const std::string path = file.string();
    if (file.filename().string().starts_with('.') || !isNew(file)) return;
    if (hasExtension(path, kProjectExtension) || isDefinition(path) || (savedModels_ && isSavedModel(path)))
      found_.push_back(path);
  }

  bool savedModels_;
  std::vector<fs::path> open_;
  std::set<std::pair<dev_t, ino_t>> met_;
  std::vector<std::string> found_;
};

}  // namespace

std::vector<std::string> definitionsIn(const std::string& folder) {
  if (findFolderModel(folder)) return {folder};
  const Listing listing{fs::path(folder)};
  std::vector<std::string> found = projectsIn(listing);
  for (const fs::path& child : listing.folders) {
    if (!isSemanticModelName(child.string())) continue;
    if (findFolderModel(child.string()) || !causeOfUnlisted(child).empty()) found.push_back(child.string());
  }
  return found;
}

std::vector<std::string> definitionsBelow(const std::string& folder) {
  return FolderWalk(folder, false).walk();
}

std::vector<std::string> modelsBelow(const std::string& folder) {
  return FolderWalk(folder, true).walk();
}

std::vector<std::string> partsOfDefinition(const std::string& folder) {
  std::vector<std::string> parts;
  std::vector<fs::path> open{folder};
  std::set<std::pair<dev_t, ino_t>> met;  // a link may lead back
  while (!open.empty()) {
    const fs::path current = std::move(open.back());
    open.pop_back();
    struct stat status {};
    if (stat(current.c_str(), &status) != 0 || !met.emplace(status.st_dev, status.st_ino).second) continue;
    const Listing listing(current);
    for (const fs::path& file : listing.files)
      if (hasExtension(file.string(), ".tmdl") || hasExtension(file.string(), ".tmd"))
        parts.push_back(file.string());
    for (const fs::path& child : listing.folders)
      if (!child.filename().string().starts_with('.')) open.push_back(child);
  }
  std::sort(parts.begin(), parts.end());
  return parts;
}

}  // namespace host

#include "host/inputs/project.h"

#include <algorithm>
#include <filesystem>
#include <unordered_map>
#include <unordered_set>

#include "framework/dom/dom.h"
#include "framework/std/exception.h"
#include "framework/std/text.h"
#include "messages/message.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFullPath = "FullPath";

/// The files of a folder by their names without letter case.
class FolderFiles {
 public:
  explicit FolderFiles(const fs::path& folder) : folder_(folder) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
      const std::string name = entry->path().filename().string();
      files_.emplace(tav::foldedName(name), name);
    }
  }

  /// The path of a file, and empty when there is none. Its own spelling is preferred.
  [[nodiscard]] std::string find(const std::string& name) const {
    std::error_code ignored;  // what cannot be asked for is not there
    if (fs::exists(folder_ / name, ignored)) return (folder_ / name).string();
    const auto found = files_.find(tav::foldedName(name));
    return found == files_.end() ? std::string() : (folder_ / found->second).string();
  }

 private:
  fs::path folder_;
  std::unordered_map<std::string, std::string> files_;
};

class ProjectReader {
 public:
  ProjectReader(const std::string& file, MessageLog& log)
      : log_(log), folder_(fs::path(file).parent_path()), files_(folder_.empty() ? "." : folder_) {
    project_.file = file;
  }

  Project read() {
    TAVDOM dom(&log_);
    const TAVDOMElement& root = *dom.parseFile(TAVFile(TAVString(project_.file)));
    const TAVDOMElement* database = root.getFirstElement("Database");
    if (database) project_.database = listed(*database);
    for (std::size_t i = 0; i < kProjectGroups.size(); ++i)
      if (const TAVDOMElement* group = root.getFirstElement(kProjectGroups[i].group))
        readGroup(*group, project_.objects[i]);
    findBuild();
    return std::move(project_);
  }

 private:
  void readGroup(const TAVDOMElement& group, std::vector<ProjectObject>& objects) {
    for (const TAVDOMElement& item : group.getElements()) {
      ProjectObject object{listed(item), {}};
      const TAVDOMElement* dependencies = item.getFirstElement("Dependencies");
      if (dependencies) {
        for (const TAVDOMElement& dependency : dependencies->getElements())
          if (isPartitions(dependency.getFirstElementValue(kFullPath)))
            object.partitions = listed(dependency);
      }
      if (!object.file.empty()) objects.push_back(std::move(object));
    }
  }

  static bool isPartitions(std::string_view name) {
    return tav::foldCase(fs::path(name).extension().string()) == ".partitions";
  }

  /// The path of a listed file; empty, and said, when it cannot be read or was listed before.
  std::string listed(const TAVDOMElement& item) {
    std::string name(item.getFirstElementValue(kFullPath));
    if (name.empty()) return name;
    std::replace(name.begin(), name.end(), '\\', '/');
    const fs::path path = fs::path(name).lexically_normal();
    const auto refuse = [&](std::string_view cause) {
      reportLostFile((folder_ / name).string(), cause, project_.file, log_);
      return std::string();
    };
    if (path.is_absolute() || *path.begin() == "..") return refuse("it is outside the project's folder");
    std::string found = files_.find(name);
    if (found.empty()) return refuse("it is not there");
    if (taken_.insert(found).second) return found;
    log_.logEvent(tav::messageEvent(tav::Message::fileListedTwice, {found, project_.file}));
    return {};
  }

  /// A build keeps the target's name beside the database; the user's own settings of the project count more.
  void findBuild() {
    const FolderFiles built(folder_ / "bin");
    std::vector<fs::path> stems{fs::path(project_.file).stem()};
    if (const fs::path own = fs::path(project_.database).stem(); own != stems.front()) stems.push_back(own);
    for (const fs::path& stem : stems) {
      if (project_.build.empty()) project_.build = built.find(stem.string() + ".asdatabase");
      if (project_.target.empty())
        project_.target = targetIn(built.find(stem.string() + ".deploymenttargets"), "Database");
    }
    const std::string own = fs::path(project_.file).filename().string() + ".user";
    if (std::string target = targetIn(files_.find(own), "TargetDatabase"); !target.empty())
      project_.target = std::move(target);
  }

  /// The first value of this tag in a file of settings; empty when there is none.
  std::string targetIn(const std::string& file, std::string_view tag) {
    if (file.empty()) return {};
    try {
      TAVDOM dom(nullptr);
      std::vector<const TAVDOMElement*> open{dom.parseFile(TAVFile(TAVString(file)))};
      while (!open.empty()) {
        const TAVDOMElement& element = *open.back();
        open.pop_back();
        if (element.getLocalName() == tag && element.getElementCount() == 0)
          return std::string(tav::trimmed(element.getValue()));
        for (const TAVDOMElement& child : element.getElements()) open.push_back(&child);
      }
    } catch (const TAVException& error) {
      reportLostName(file, error.getMessage().view());
    }
    return {};
  }

  /// The message of the exception is "[identifier] file:line:column: cause".
  void reportLostName(const std::string& file, std::string_view message) {
    const std::size_t name = message.find(file);
    if (name != message.npos) message.remove_prefix(name + file.size());
    const std::size_t cause = message.find(": ");
    const std::string place(message.substr(0, cause == message.npos ? 0 : cause));
    if (cause != message.npos) message.remove_prefix(cause + 2);
    log_.logEvent(tav::messageEvent(tav::Message::nameNotRead, {file + place, message}));
  }

  MessageLog& log_;
  fs::path folder_;
  FolderFiles files_;
  std::unordered_set<std::string> taken_;
  Project project_;
};

}  // namespace

Project readProject(const std::string& file, MessageLog& log) {
  return ProjectReader(file, log).read();
}

void reportLostFile(const std::string& file, std::string_view cause, const std::string& project,
                    MessageLog& log) {
  log.logEvent(tav::messageEvent(tav::Message::listedFileLost, {file, cause, project}));
}

}  // namespace host

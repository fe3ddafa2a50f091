#include "host/reports/report_files.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "host/inputs/extension.h"
#include "host/inputs/file_text.h"
#include "host/inputs/listing.h"
#include "host/inputs/semantic_model.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kArchiveFolder = "Report/";
constexpr int kDeepest = 8;  // of folders; reports have four

/// Whether a file of a report may name something of the model.
bool isWanted(std::string_view name) {
  return name == "report.json" || name == "definition.pbir" || name == "Layout" ||
         (name.starts_with("definition/") && name.ends_with(".json"));
}

std::string canonical(const fs::path& path) {
  std::error_code error;
  const fs::path canonical = fs::canonical(path, error);
  return error ? std::string() : canonical.string();
}

/// One that cannot be listed may be one, and is lost as such.
bool isReportFolder(const fs::path& folder) {
  std::error_code ignored;  // what cannot be asked for is not there
  return fs::exists(folder / "definition.pbir", ignored) || fs::exists(folder / "report.json", ignored) ||
         fs::is_directory(folder / "definition" / "pages", ignored) || !causeOfUnlisted(folder).empty();
}

/// Whether a report is on the model in a folder, which may be the only one beside it. One that cannot tell
/// any longer is on that, or on the model that is called like it.
bool isOn(const std::string& report, const std::string& model, bool isOnly) {
  const ReportLink link = followReport(report);
  if (!link.model.empty()) return canonical(link.model) == model;
  const bool cannotTell = isReportFolder(report) && (link.broken || link.cause.empty());
  return cannotTell && (isOnly || fs::path(report).stem() == fs::path(model).stem());
}

void appendEntries(const fs::path& folder, std::vector<fs::path>& paths) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    if (!entry->path().filename().string().starts_with('.')) paths.push_back(entry->path());
}

/// The folder that a folder is in, written as that is.
fs::path parentOf(const fs::path& folder) {
  const fs::path plain = folder.has_filename() ? folder : folder.parent_path();
  if (plain.filename() == "." || plain.filename() == "..") return plain / "..";
  return plain.has_parent_path() ? plain.parent_path() : fs::path(".");
}

/// What a report in a folder consists of. Only one of its folders holds more than pictures and the like.
class FolderWalk {
 public:
  explicit FolderWalk(const fs::path& folder) : folder_(folder) { list(folder, 0); }

  void walk() {
    while (!open_.empty()) {
      const auto [current, depth] = std::move(open_.back());
      open_.pop_back();
      list(current, depth);
    }
  }

  std::vector<std::string> names;
  std::vector<std::string> folders;
  std::vector<UnreadFolder> unread;

 private:
  void list(const fs::path& current, int depth) {
    std::error_code error;
    for (fs::directory_iterator entry(current, error), end; !error && entry != end; entry.increment(error))
      add(*entry, depth);
    if (error)
      unread.push_back({current.string(), error.message()});
    else
      folders.push_back(current.lexically_relative(folder_).generic_string());
  }

  void add(const fs::directory_entry& entry, int depth) {
    std::string name = entry.path().lexically_relative(folder_).generic_string();
    std::error_code ignored;  // a link that leads nowhere is no folder
    const bool isFolder = entry.is_directory(ignored);
    // What stands in a file's place is a file that cannot be read.
    if (isWanted(name)) return names.push_back(std::move(name));
    if (!isFolder || (depth == 0 && name != "definition")) return;
    if (entry.is_symlink(ignored))
      unread.push_back({entry.path().string(), "links to folders are not followed"});  // into no circle
    else if (depth == kDeepest)
      unread.push_back({entry.path().string(), "it is deeper than reports are"});
    else
      open_.emplace_back(entry.path(), depth + 1);
  }

  fs::path folder_;
  std::vector<std::pair<fs::path, int>> open_;
};

std::vector<std::string> namesIn(const Archive& archive) {
  std::vector<std::string> names;
  for (const std::string& entry : archive.entries()) {
    if (!entry.starts_with(kArchiveFolder)) continue;
    std::string name = entry.substr(std::string_view(kArchiveFolder).size());
    if (isWanted(name)) names.push_back(std::move(name));
  }
  return names;
}

}  // namespace

std::vector<ReportPlace> reportsOn(const std::string& modelFolder, const std::string& also) {
  const std::string model = canonical(modelFolder);
  std::map<std::string, std::string> folders;  // as they are called, by where they are
  if (!also.empty()) folders.emplace(canonical(also), also);
  std::vector<fs::path> beside;
  appendEntries(parentOf(modelFolder), beside);
  const bool isOnly = std::count_if(beside.begin(), beside.end(), [](const fs::path& path) {
                        return isSemanticModelName(path.string());
                      }) == 1;
  for (const fs::path& entry : beside) {
    const std::string path = entry.string();
    if (hasExtension(path, ".report") && isOn(path, model, isOnly)) folders.emplace(canonical(path), path);
  }
  std::vector<ReportPlace> reports;
  reports.reserve(folders.size());
  for (const auto& [place, path] : folders) reports.push_back({path, nameOfItem(path), false});
  return reports;
}

std::vector<ReportPlace> reportsAt(const std::string& path) {
  std::vector<ReportPlace> reports;
  std::vector<fs::path> open{path};
  // Links to folders are not followed, so that no circle is met.
  for (std::size_t next = 0; next < open.size(); ++next) {
    const std::string place = open[next].string();
    std::error_code ignored;  // what cannot be asked for is no report
    if (fs::is_regular_file(place, ignored) && hasExtension(place, ".rdl"))
      reports.push_back({place, open[next].stem().string(), false, true});
    else if (fs::is_directory(place, ignored) && isReportFolder(place))
      reports.push_back({place, nameOfItem(place)});
    else if (fs::is_directory(place, ignored) && (next == 0 || !fs::is_symlink(place, ignored)))
      appendEntries(open[next], open);
  }
  std::sort(reports.begin(), reports.end(),
            [](const ReportPlace& a, const ReportPlace& b) { return a.path < b.path; });
  return reports;
}

ReportFiles::ReportFiles(const ReportPlace& report) : place_(report.path) {
  if (report.isArchive) {
    archive_ = archives().open(report.path);
    names_ = namesIn(*archive_);
  } else {
    if (const std::string cause = causeOfUnlisted(place_); !cause.empty()) throw std::runtime_error(cause);
    FolderWalk folder(place_);
    folder.walk();
    names_ = std::move(folder.names);
    folders_ = std::move(folder.folders);
    unread_ = std::move(folder.unread);
  }
  std::sort(names_.begin(), names_.end());
  std::sort(folders_.begin(), folders_.end());
}

std::string ReportFiles::pathOf(const std::string& name) const {
  return archive_ ? place_ : (fs::path(place_) / name).string();
}

std::string ReportFiles::textOf(const std::string& name) const {
  if (archive_) return asUtf8(archive_->read(kArchiveFolder + name));
  FileText text = readFileText(pathOf(name));
  if (!text.error.empty()) throw std::runtime_error(text.error);
  return std::move(text.text);
}

}  // namespace host

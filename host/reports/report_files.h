#pragma once

// The files that a report consists of, wherever they are kept.

#include <memory>
#include <string>
#include <vector>

#include "host/inputs/archive.h"

namespace host {

/// Where a report on a model is.
struct ReportPlace {
  std::string path;  ///< the report's folder or file, or the archive that holds it
  std::string name;  ///< what the report is called
  bool isArchive = false;
  bool isPaginated = false;  ///< one file in the language of paginated reports (.rdl)
};

/// The reports by their folders, each once, that are on the model in `modelFolder` and lie beside it, in the
/// order of their names; `also` counts as one of them wherever it is, unless it is empty.
std::vector<ReportPlace> reportsOn(const std::string& modelFolder, const std::string& also);

/// The reports that a path leads to: a paginated report, a report of Power BI by its folder, and those in a
/// folder and the folders in it. In the order of their names.
std::vector<ReportPlace> reportsAt(const std::string& path);

/// A folder of a report whose files are not known.
struct UnreadFolder {
  std::string path;
  std::string cause;
};

/// What of a report can name something of its model: without pictures, themes and the like.
class ReportFiles {
 public:
  /// Throws std::runtime_error for an archive that cannot be opened, and a folder that cannot be listed.
  explicit ReportFiles(const ReportPlace& report);

  /// Ordered, with slashes: "definition/pages/one/page.json".
  [[nodiscard]] const std::vector<std::string>& names() const noexcept { return names_; }
  /// The folders of a folder's report, ordered. An archive tells of none.
  [[nodiscard]] const std::vector<std::string>& folders() const noexcept { return folders_; }
  [[nodiscard]] const std::vector<UnreadFolder>& unread() const noexcept { return unread_; }
  /// Where a file is, for people and for whoever reads its bytes: in an archive, the archive.
  [[nodiscard]] std::string pathOf(const std::string& name) const;
  /// The text of a file in UTF-8. Throws std::runtime_error with the cause.
  [[nodiscard]] std::string textOf(const std::string& name) const;

 private:
  std::string place_;
  std::unique_ptr<Archive> archive_;
  std::vector<std::string> names_;
  std::vector<std::string> folders_;
  std::vector<UnreadFolder> unread_;
};

}  // namespace host

#pragma once

// Semantic models of Power BI as folders: what in them is the model, and what it is called.

#include <optional>
#include <string>

namespace host {

/// A definition in a folder.
struct FolderModel {
  std::string path;    ///< what the plug-in reads: a file, or a folder of TMDL
  std::string name;    ///< that the folder gives it
  bool named = false;  ///< whether the folder says so in a file, which counts more than the definition's own
};

/// The model that the folder itself holds: as model.bim, as TMDL in its subfolder `definition`, or as files
/// in TMDL. It goes by what is there, not by a version that a file tells. Null when there is none.
std::optional<FolderModel> findFolderModel(const std::string& folder);

/// Whether a folder is called like one of a semantic model.
bool isSemanticModelName(const std::string& folder);

/// What a project of Power BI (.pbip), or a report by its folder or its definition.pbir, leads to: the folder
/// of the model, or else why there is none. Nothing is told of a file that is neither.
struct ReportLink {
  std::string model;
  std::string report;  ///< the folder of the report
  std::string cause;
  bool broken = false;  ///< whether the file that names the model is missing or no JSON
};
ReportLink followReport(const std::string& path);

/// What a folder of a model or report is called: as a file in it says, else as the folder is.
std::string nameOfItem(const std::string& folder);

/// A file that should name a folder's model or report and does not.
struct NameFault {
  std::string file;  ///< with line and column where it is broken
  std::string cause;
};
/// Null for a folder that no file is to name, too.
std::optional<NameFault> faultOfName(const std::string& folder);

/// The name of a model whose definition calls it `own`: what the folder says; without that its own name
/// unless it is one that programs give; then the folder's name.
std::string modelName(const std::string& own, const std::string& name, bool named);

}  // namespace host

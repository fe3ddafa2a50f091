#pragma once

// A multidimensional project: what its files make one definition of.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "host/message_log.h"

namespace host {

/// A kind of objects that a project lists the files of.
struct ProjectGroup {
  std::string_view group;       ///< the project's element that lists them
  std::string_view collection;  ///< the database's element that they belong in
  std::string_view object;      ///< the root element of each of the files
};

/// In the order in which a build puts them into the database.
inline constexpr std::array kProjectGroups{
    ProjectGroup{"Dimensions", "Dimensions", "Dimension"}, ProjectGroup{"Cubes", "Cubes", "Cube"},
    // Their files hold structures, which have the models in them.
    ProjectGroup{"MiningModels", "MiningStructures", "MiningStructure"},
    ProjectGroup{"DataSources", "DataSources", "DataSource"},
    ProjectGroup{"DataSourceViews", "DataSourceViews", "DataSourceView"},
    ProjectGroup{"Assemblies", "Assemblies", "Assembly"}, ProjectGroup{"Roles", "Roles", "Role"}};

/// A listed file by its path; an empty one is not listed or not there.
struct ProjectObject {
  std::string file;
  std::string partitions;  ///< of a cube: the file that its partitions are in
};

struct Project {
  std::string file;  ///< the project's own
  std::string database;
  std::array<std::vector<ProjectObject>, kProjectGroups.size()> objects;
  std::string target;  ///< the name that the database is deployed under; empty when it is not told
  std::string build;   ///< the file that the project's database was built into; empty when there is none
};

/// Reads the list of files out of a project. What it lists and is not there is an error in `log`. Throws what
/// TAVDOM throws for a project that is not well-formed.
Project readProject(const std::string& file, MessageLog& log);

/// Reports that a listed file is not read.
void reportLostFile(const std::string& file, std::string_view cause, const std::string& project,
                    MessageLog& log);

}  // namespace host

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/model/model.h"

namespace tav::test {

/// The lineage of the features in a folder of a cube, such as "Calculated Measures": a feature a line, behind
/// it its sources by path ("<-") and the names that were not found ("?"), each in the order of the
/// expression. A feature is named with its classifier, unless that is called like the folder.
std::string lineageText(const TAVPackage& folder);

/// The lineage of what the cubes of a model calculate, each folder of calculated measures and KPIs under its
/// path.
std::string lineageText(const TAVStoreModel& model);

/// The names in the feature's expression that were not found, in order.
std::vector<std::string_view> unresolvedNames(const TAVFeature& feature);

/// The cube packages of an imported model in order.
std::vector<TAVPackage*> cubePackages(const TAVStoreModel& model);

}  // namespace tav::test

#pragma once

#include <string>
#include <vector>

#include "exports/versions.h"
#include "lineage/name_completion.h"

namespace tav {

/// Adds what the nodes of these models of a database are called. Looks at all nodes, if they are few enough
/// to wait for that at a prompt; otherwise adds nothing. Throws when the file is something else.
void completeNames(const std::string& path, const std::vector<EstateModel>& models,
                   NameCompletion& completion);

}  // namespace tav

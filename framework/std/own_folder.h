#pragma once

#include <filesystem>

#include "framework/api.h"

namespace tav {

/// The folder that the framework's own library is in, whoever loaded it. Links are followed: a link to the
/// library elsewhere does not move the tree that it belongs to. Throws a TAVException when that cannot be
/// told.
TAV_API std::filesystem::path ownFolder();

}  // namespace tav

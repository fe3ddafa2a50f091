#pragma once

#include <cstdint>
#include <filesystem>

namespace tav::bench {

/// A model in TMDL of so many tables, each of 60 columns and 60 measures: a file each in `folder`, which is
/// made, and all of it in `file`.
void writeTmdl(const std::filesystem::path& folder, const std::filesystem::path& file, std::uint64_t tables);

/// A multidimensional project of so many dimensions, each of 100 attributes: a file each in `folder`, which
/// is made, beside its list definition.dwproj, and the database that they make in `file`.
void writeProject(const std::filesystem::path& folder, const std::filesystem::path& file,
                  std::uint64_t dimensions);

}  // namespace tav::bench

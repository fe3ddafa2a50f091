#pragma once

// What a model can be exported as. A format is one file, declared and listed in formats.cpp.

#include <cstdint>
#include <functional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/details/detailed_model.h"
#include "lineage/address_map.h"

namespace tav {

/// What the user asked for of proposals for DataHub.
struct DatahubOptions {
  std::string environment = "PROD";
  /// Instances of platforms, by the URI of the server.
  std::vector<std::pair<std::string, std::string>> instances;
  /// Whether tables of databases are described too, which another producer may do better.
  bool describesTables = false;
};

/// What the user asked for beside the format. Each format reads what concerns it.
struct ExportOptions {
  /// The file that was read, as the user named it: a definition or a saved model, "-" for standard input.
  std::string input;
  /// When the input was written, as "2026-03-08T10:00:00Z"; empty where its file tells.
  std::string inputTime;
  /// Around which node lineage is shown: a name as trace and impact take it; empty for all.
  std::string from;  ///< and what depends on it
  std::string to;    ///< and what it comes from
  /// The namespace of what the server itself holds: cubes, dimensions, measure groups.
  std::string server = "ssas://localhost";
  /// Whether datasets and jobs are told of as such, instead of a run.
  bool staticEvents = false;
  DatahubOptions datahub;
  /// How databases are called.
  AddressMap map;
  /// The messages that the import logged about the model, for formats that keep them.
  std::span<const std::string> warnings;
};

/// A format that is one text goes to a stream; one that is made of files names them itself.
struct ExportFormat {
  std::string_view name;
  std::string_view description;  ///< half a line for the help
  void (*write)(const DetailedModel& model, const ExportOptions& options, std::ostream& out) = nullptr;
  void (*writeFiles)(const DetailedModel& model, const ExportOptions& options,
                     const std::string& path) = nullptr;
  std::string_view extension;  ///< of the name of a file in this format
  bool takesNames = false;   ///< whether it can show the lineage around one node: ExportOptions::from and to
  bool joinsModels = false;  ///< whether several models, one written behind the other, are one document
};

std::span<const ExportFormat* const> exportFormats() noexcept;
/// The format of this name, or null.
const ExportFormat* findExportFormat(std::string_view name) noexcept;

}  // namespace tav

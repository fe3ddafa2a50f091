#pragma once

// The models that lie in an estate database, as inputs.

#include <optional>
#include <string>
#include <vector>

#include "exports/versions.h"
#include "host/inputs/memory_file.h"

namespace host {

/// What a user named in an estate.
struct EstatePlace {
  std::string path;   ///< of the database
  std::string model;  ///< its name, or the path of its definition or the end of that; empty for all models
};

/// The estate that an argument names: "estate.db", or "estate.db#Sales" for a model in it. Null for every
/// other argument.
std::optional<EstatePlace> estatePlace(const std::string& argument);

/// The models of the place. Throws Message::unknownInEstate when there are none, or when a name means
/// several.
std::vector<tav::EstateModel> modelsIn(const EstatePlace& place);

/// The model of an estate that an argument names; null for every other argument, and for an estate as a
/// whole.
std::optional<tav::EstateModel> storedModel(const std::string& argument);

/// Names for a message that offers them, a long list cut short.
std::string shortList(const std::vector<std::string>& names);

/// What names one model of an estate alone.
std::string estateArgument(const std::string& path, const tav::EstateModel& model);

/// The document of a model. Throws Message::modelNotKept when the estate has none.
MemoryFile documentIn(const EstatePlace& place, const tav::EstateModel& model);

}  // namespace host

#pragma once

// Imports into an estate: one database for the models of many definitions, of which only those are read that
// have changed since.

#include <string>
#include <vector>

#include "host/import_run.h"
#include "host/map_option.h"
#include "host/message_log.h"

namespace host {

struct EstateTarget {
  std::string path;
  bool history = true;  ///< whether documents of earlier versions are kept
  bool force = false;   ///< whether unchanged definitions are read too
  bool prune = false;   ///< whether models go whose definitions are gone
  bool json = false;    ///< whether the summary is JSON
  GivenMap map;         ///< the rules that the estate has from now on; without, it keeps those that it has
};

/// Whether the inputs are one definition, or one folder that cannot be listed, which need no other process.
bool isOneDefinition(const std::vector<std::string>& inputs);

/// Imports one definition and tells what was found. Returns an exit code; throws when the import fails. The
/// estate has the model before then.
int importIntoEstate(const std::string& input, const EstateTarget& target, const ImportScope& scope,
                     MessageLog& log);

/// Imports all definitions that the inputs are or hold, `jobs` at a time, and tells of all. Definitions of
/// the estate that lie below a folder among the inputs belong to it: those that are gone are told.
int importIntoEstate(const std::vector<std::string>& inputs, std::size_t jobs, const EstateTarget& target,
                     const ImportScope& scope, MessageLog& log);

}  // namespace host

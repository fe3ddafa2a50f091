#pragma once

// The versions of definitions that an estate has: a database of models which knows what each was made of.

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "framework/details/detailed_model.h"
#include "lineage/address_map.h"

namespace tav {

/// How long an import waits for others that write to the same database.
inline constexpr std::chrono::minutes kEstatePatience{1};

/// A definition as an import finds it.
struct EstateDefinition {
  std::string source;  ///< see canonicalSource()
  std::string hash;    ///< of all that is read of it; empty when that is not known
  std::string reader;  ///< the program that reads it, and what it leaves out
};

/// What an estate has of a definition.
struct EstateVersion {
  std::int64_t id = 0;
  std::string name;      ///< of the model
  std::string imported;  ///< since when it is so, as "2026-03-08T10:00:00Z"
  std::string state;     ///< how its import ended: see kStateOk and so on
};

inline constexpr std::string_view kStateOk = "ok";
inline constexpr std::string_view kStateWarnings = "warnings";
inline constexpr std::string_view kStateIncomplete = "incomplete";
inline constexpr std::string_view kStateRemoved = "removed";

/// A model in a database of models.
struct EstateModel {
  std::int64_t id = 0;
  std::string source;  ///< see canonicalSource()
  std::string name;
  std::optional<EstateVersion> version;  ///< null for a model that was exported, which has no document
};

/// How an import into an estate went, and what it keeps.
struct EstateImport {
  std::string_view state;  ///< see kStateOk and so on
  bool history = true;     ///< whether documents of versions before are kept
  std::span<const std::string> warnings;
  AddressMap map;  ///< how databases are called
};

/// Whether a file is a database of models.
bool isEstate(const std::string& path);

/// The models of a database, ordered by their sources; of one source alone where that is named. Throws when
/// the file is something else.
std::vector<EstateModel> modelsOf(const std::string& path, const std::optional<std::string>& source = {});

/// Makes the database when it is missing. Throws when the file is something else.
void makeEstate(const std::string& path);

/// The rules by which databases are called in the estate (see AddressMap); empty without, and where there is
/// no estate yet.
std::string addressRulesOf(const std::string& path);
/// Puts other rules in their place. Models keep their names until they are imported again.
void setAddressRules(const std::string& path, std::string_view rules);

/// The version that an import of this definition would only repeat; null when it is to be imported. What was
/// lost of an incomplete one may be there now.
std::optional<EstateVersion> findUnchanged(const std::string& path, const EstateDefinition& definition);

/// Puts the model of a definition into the estate in place of the one before, and remembers its document, in
/// which passwords are masked. All of it or, when this throws, nothing.
void importIntoEstate(const std::string& path, const EstateDefinition& definition, const DetailedModel& model,
                      const EstateImport& import);

/// Two times, each as "2026-03-08T10:00:00Z".
struct EstateSpan {
  std::string since;
  std::string until;
};

/// A source whose content differs at two times. Without a version, its model was not there.
struct EstateChange {
  std::string source;
  std::optional<EstateVersion> before;
  std::optional<EstateVersion> after;
};

/// The sources that changed, in their order. What changed back in between has not.
std::vector<EstateChange> changesBetween(const std::string& path, const EstateSpan& span);

/// The document of a version. Throws Message::documentNotKept when there is none, and when it is damaged.
std::string documentOf(const std::string& path, const std::string& source, const EstateVersion& version);

/// The sources in the estate that lie below a folder, which is given by its canonical path; in their order.
std::vector<std::string> sourcesBelow(const std::string& path, const std::string& folder);

/// Takes the models of these sources away. What is known of their versions stays.
void removeFromEstate(const std::string& path, std::span<const std::string> sources);

}  // namespace tav

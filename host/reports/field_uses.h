#pragma once

// What the JSON of a report names of its model. A query calls a table by a name of its own ("From"), which
// holds for what stands below the query.

#include <compare>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace host {

/// A field as a report writes it.
struct FieldUse {
  enum class Kind { column, measure, hierarchy };
  Kind kind;
  std::string table;
  std::string name;       ///< of the column, measure or hierarchy
  std::string level;      ///< of the hierarchy; empty for all of it
  bool filters = false;   ///< narrows what is shown, rather than being shown
  bool offered = false;   ///< a filter that narrows nothing yet
  bool ofReport = false;  ///< the report's own measure

  friend auto operator<=>(const FieldUse&, const FieldUse&) = default;
};

/// Appends the fields that are named in `json`, at any depth, each once in the order in which it is first
/// met; below `filters` if all of it is a filter. Texts that hold JSON are read as such where reports have
/// them.
void appendFieldUses(const nlohmann::json& json, bool filters, std::vector<FieldUse>& uses);

}  // namespace host

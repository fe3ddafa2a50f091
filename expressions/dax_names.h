#pragma once

// The names in an expression in DAX, for the measures that scripts in MDX create in it.

#include <string>
#include <string_view>
#include <vector>

namespace tav {

/// `'Table'[Name]`, `Table[Name]`, `[Name]`, `'Table'` or a word that may be a table.
struct DaxName {
  std::string table;      ///< without quotes; empty when none is written
  std::string name;       ///< of a column or measure, without brackets; empty for a table alone
  std::string_view text;  ///< as written
  bool isWord = false;    ///< a table's name without quotes, or a word of the language, or a variable
};

/// The names in a text, in its order. What stands in strings and comments is none, nor what is called.
std::vector<DaxName> daxNamesIn(std::string_view text);

}  // namespace tav

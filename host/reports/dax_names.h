#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A name in DAX: 'Table'[Name], [Name] or 'Table' alone.
struct DaxName {
  std::string table;    ///< empty where none is written
  std::string name;     ///< empty for a table alone
  bool quoted = false;  ///< whether the table stands in quotes, so that it can be nothing else
};

/// The names in an expression, in its order. Which of them are variables, functions or columns that the
/// expression makes itself is for the caller to tell.
std::vector<DaxName> daxNames(std::string_view text);

}  // namespace host

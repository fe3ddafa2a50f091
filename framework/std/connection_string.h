#pragma once

// OLE DB and ODBC connection strings: `Provider=SQLNCLI11.1;Data Source=srv;Password={a;b}`.

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

#include "framework/api.h"
#include "framework/std/string.h"

namespace tav {

/// The values of a connection string by key, letter case ignored. The first of equal keys counts. A value in
/// quotes or braces is given without them, a doubled closing one made single; another goes to the next
/// semicolon, without blanks around it.
class TAV_API ConnectionString {
 public:
  explicit ConnectionString(std::string_view text);

  /// The value of the first of these keys, in small letters, that has one; or the empty text.
  [[nodiscard]] std::string_view get(std::initializer_list<std::string_view> keys) const;

 private:
  std::map<std::string, std::string, std::less<>> values_;
};

/// The place behind the value that begins at `begin`, blanks in front of it skipped: its closing quote or
/// brace, or the semicolon behind it.
TAV_API std::size_t endOfConnectionValue(std::string_view text, std::size_t begin);

}  // namespace tav

/// The value of a key as imports of XML definitions take it: the key is looked for as plain text, ignoring
/// letter case; the value ends at the next ";" and is given without blanks around it, equals signs and double
/// quotes. The empty text when there is none.
TAV_API TAVString getConnectionStringValue(const TAVString& connectionString, const TAVString& key);

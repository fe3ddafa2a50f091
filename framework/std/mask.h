#pragma once

// Passwords in texts that leave the program.

#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// `text` with the value of each key Password or PWD, in any letter case, shown as "***". A key stands
///  - in a connection string, also one in quotes, doubled quotes or braces: `Password=a;`, `PWD={a;b}`;
///  - in M and SQL, before a literal: `[Password="a"]`, `#"pwd" = "a"`, `@password = N'a'`, also one that is
///    put together: `"Password=" & "a"`;
///  - in JSON, which may itself be quoted: `"password": "a"`.
/// Quotes around a value stay, and so does an empty value. A comparison with something that is no literal
/// and prose stay as they are. What cannot be told for sure is rather hidden than shown. Linear.
TAV_API std::string maskPasswords(std::string_view text);

/// The value of a property: as maskPasswords(), and hidden whole when `name` is such a key, `credential.pwd`
/// included.
TAV_API std::string maskProperty(std::string_view name, std::string_view value);

}  // namespace tav

#pragma once

// Rules that give servers, databases and schemas the names that other producers of lineage use, so that
// tables and columns which definitions spell differently are one.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lineage/database_address.h"

namespace tav {

class AddressMap {
 public:
  /// A map without rules.
  AddressMap() = default;
  /// Reads rules, a line each: `server=localhost database=Stage* -> server=mssql://dwh.example:1433`. Empty
  /// lines and those that begin with # are passed over. Throws Message::badMapRule, which names `file` and
  /// the line, for anything else.
  static AddressMap parse(std::string_view text, std::string_view file);

  /// Puts in place what the first rule says that fits; without such a rule everything stays. Letter case, of
  /// any script, does not count. A server that has another scheme then is of the kind of that scheme.
  void apply(DatabaseAddress& address, std::string& schema) const;

  [[nodiscard]] bool empty() const noexcept { return rules_.empty(); }
  /// The rules as they were read.
  [[nodiscard]] const std::string& text() const noexcept { return text_; }

 private:
  /// Of a word of a rule, what is compared, in which `*` stands for any text, or what is put in place, in
  /// which it stands for what the `*` of the same word has stood for.
  struct Side {
    std::u32string text;
    bool given = false;
  };
  struct Rule {
    Side server, database, schema;
    Side newServer, newDatabase, newSchema;
  };
  friend class AddressRuleReader;

  static std::optional<std::vector<std::u32string>> matchOneOf(const Side& side,
                                                               std::span<const std::string> texts);

  std::string text_;
  std::vector<Rule> rules_;
};

}  // namespace tav

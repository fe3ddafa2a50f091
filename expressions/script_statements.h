#pragma once

// MDX scripts as what they are: a list of statements. What cannot be read as a statement loses only itself.
// Linear in the text, whatever it holds.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "framework/expression/lexer.h"

namespace tav {

enum class StatementKind : std::uint8_t {
  calculate,
  member,
  set,
  cells,
  kpi,
  action,
  subcube,
  measure,  ///< of a tabular definition in this form, in DAX
  alter,
  update,
  drop,
  scope,
  endScope,
  freeze,
  assignment,  ///< of a value, or of a property where there is one
  unknown,     ///< none of these
};
inline constexpr std::size_t kStatementKindCount = static_cast<std::size_t>(StatementKind::unknown) + 1;

/// The kind in words: "CREATE MEMBER", "SCOPE".
std::string_view statementWords(StatementKind kind) noexcept;

struct StatementProperty {
  std::string_view name;
  std::string_view value;  ///< an expression, as it is written
};

/// The texts are views into the script.
struct ScriptStatement {
  static constexpr std::uint32_t kNoScope = 0xFFFFFFFF;

  StatementKind kind = StatementKind::unknown;
  bool hidden = false;
  bool dynamic = false;            ///< a set that each query evaluates anew
  std::uint32_t scope = kNoScope;  ///< the place of the SCOPE that it stands in
  std::string_view text;           ///< without the semicolon
  std::string_view name;           ///< what it defines, alters or drops, as it is written
  std::string_view range;          ///< the cells that it is about; of an action what it is offered on
  std::string_view expression;     ///< what gives the value
  std::string_view condition;      ///< of an assignment behind IF
  std::string_view property;       ///< of an assignment: which property of the cells, FORE_COLOR
  std::vector<StatementProperty> properties;
  ExpressionFault fault;  ///< where it breaks the grammar, by its place in the script
};

/// The statements of a script in order; an IF is one assignment for each of its branches.
std::vector<ScriptStatement> parseScript(std::string_view script);

/// Whether a property of a member or of cells is made by an expression that may name something, rather than
/// set to a text, a number or a word.
bool isExpression(std::string_view value);

}  // namespace tav

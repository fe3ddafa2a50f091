#pragma once

// Expressions as trees. Nodes are places in one vector: nothing to free, and a tree of any depth costs heap
// alone. Walk it with a list of what is left, never by recursion.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api.h"
#include "framework/expression/language.h"
#include "framework/expression/lexer.h"

namespace tav {

struct ExpressionNode {
  enum class Kind : std::uint8_t {
    reference,
    call,
    operation,  ///< one operator, or a chain of equal ones
    prefix,     ///< an operator before its operand
    tuple,      ///< what stands in ( )
    set,        ///< what stands in { }
    caseOf,     ///< its input, if any, and its clauses
    clause,     ///< WHEN with condition and value, or ELSE with its value
    constant,   ///< a number, a string, NULL, TRUE, FALSE
    name,       ///< a name that is no reference: an alias, a flag, a property of what stands before
    star,       ///< a lone *
    empty,      ///< an argument that is not given
    missing,    ///< what should be here is not
  };
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  Kind kind = Kind::missing;
  bool bare = false;  ///< a reference of one part without brackets or quotes
  Op op = Op::none;
  std::uint32_t first = kNone;  ///< its parts are a chain through `next`
  std::uint32_t last = kNone;
  std::uint32_t next = kNone;
  std::uint32_t count = 0;
  std::size_t begin = 0;  ///< in bytes of the source
  std::size_t end = 0;
  std::string_view name;  ///< of a reference its text, of a call the function; of others as dump() shows it
};

class ExpressionTree {
 public:
  /// The text of a piece, as TAVExpressionNode shows it.
  [[nodiscard]] std::string_view textOf(const ExpressionNode& node) const noexcept {
    return node.kind == ExpressionNode::Kind::reference ? node.name
                                                        : source.substr(node.begin, node.end - node.begin);
  }

  std::string_view source;  ///< the text that was parsed: the one given, or what its quotes enclose
  std::vector<ExpressionNode> nodes;
  std::uint32_t root = ExpressionNode::kNone;  ///< none for an empty expression
  ExpressionFault fault;                       ///< the first in the text that was given

  // What the views above look into, beside the text that was given.
  std::unique_ptr<std::string> unquoted;
  PieceBuffer pieces;
};

/// The tree as an s-expression: operators, functions and brackets in front of their parts, names that are no
/// references with a colon, `?` for what is missing, `_` for what is not given.
TAV_API std::string dump(const ExpressionTree& tree);

}  // namespace tav

#pragma once

// Expressions of a definition's details: what they name becomes relations, and what they name in vain is
// told.

#include <string_view>
#include <unordered_set>
#include <vector>

#include "expressions/cube_names.h"
#include "framework/expression/lexer.h"

namespace tav {

/// An expression, and where what it names leads.
struct NamingExpression {
  std::string_view text;
  ItemId item;            ///< whose it is
  RelationKind relation;  ///< from what is named to the item
  /// The measure of the model whose expression it is: what the model has as its sources is not said again.
  const TAVFeature* measure = nullptr;
  /// Where measures go that the text names as the cells which it is about; null where they are as any other.
  std::vector<const TAVModelObject*>* range = nullptr;
  bool isQuery = false;  ///< holds words that are no names
};

/// Relates what an expression names to its item, and notes the names that lead to no attribute or measure.
/// Returns where it breaks the grammar.
ExpressionFault relateNames(Details& details, CubeNames& names, const NamingExpression& expression);

/// The same for an expression in DAX, of a measure that stands in `table`.
void relateDaxNames(Details& details, CubeNames& names, const NamingExpression& expression,
                    std::string_view table);

}  // namespace tav

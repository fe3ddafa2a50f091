#pragma once

#include "framework/expression/tree.h"

namespace tav {

/// Brackets, calls and CASE may stand inside each other so deep; more is a fault.
inline constexpr std::size_t kMaxExpressionDepth = 1000;

/// Parses one expression, up to a semicolon, or a comma that stands outside all brackets and calls. In MDX an
/// expression that is one single-quoted string is what the quotes enclose. Always gives a tree; what breaks
/// the grammar is told by its fault and by its missing nodes. The tree looks into `text`, which must outlive
/// it.
TAV_API ExpressionTree parseExpression(std::string_view text, ExpressionLanguage language);

}  // namespace tav

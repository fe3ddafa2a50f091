#pragma once

// The operators with how tightly they bind.

#include <array>
#include <cstdint>
#include <string_view>

namespace tav {

enum class Op : std::uint8_t {
  none,
  beside,  ///< stands where an operator is missing
  as,
  distinct,
  logicalOr,
  logicalXor,
  logicalAnd,
  logicalNot,
  equal,
  unequal,
  less,
  lessEqual,
  greater,
  greaterEqual,
  is,
  in,
  notIn,
  like,
  notLike,
  between,
  notBetween,
  escape,
  plus,
  minus,
  concatenate,
  bitAnd,
  bitOr,
  bitXor,
  times,
  divide,
  remainder,
  negative,
  positive,
  complement,
  existing,
  power,
  range,
  collate,
  over,
  index,
  member,
};

struct Operator {
  std::string_view text;
  std::uint8_t binding;  ///< the more, the tighter
};

// In the order of Op.
inline constexpr std::array kOperators{
    Operator{"", 0},         Operator{"?", 1},         Operator{"AS", 2},
    Operator{"DISTINCT", 2}, Operator{"OR", 3},        Operator{"XOR", 3},
    Operator{"AND", 4},      Operator{"NOT", 5},       Operator{"=", 6},
    Operator{"<>", 6},       Operator{"<", 6},         Operator{"<=", 6},
    Operator{">", 6},        Operator{">=", 6},        Operator{"IS", 6},
    Operator{"IN", 6},       Operator{"NOT IN", 6},    Operator{"LIKE", 6},
    Operator{"NOT LIKE", 6}, Operator{"BETWEEN", 6},   Operator{"NOT BETWEEN", 6},
    Operator{"ESCAPE", 7},   Operator{"+", 8},         Operator{"-", 8},
    Operator{"||", 8},       Operator{"&", 8},         Operator{"|", 8},
    Operator{"^", 8},        Operator{"*", 9},         Operator{"/", 9},
    Operator{"%", 9},        Operator{"-", 10},        Operator{"+", 10},
    Operator{"~", 10},       Operator{"EXISTING", 10}, Operator{"^", 11},
    Operator{":", 12},       Operator{"COLLATE", 13},  Operator{"OVER", 13},
    Operator{"()", 13},      Operator{".", 13}};

constexpr const Operator& operatorOf(Op op) noexcept {
  return kOperators[static_cast<std::size_t>(op)];
}
static_assert(kOperators.size() == static_cast<std::size_t>(Op::member) + 1 &&
              operatorOf(Op::is).text == "IS" && operatorOf(Op::existing).text == "EXISTING" &&
              operatorOf(Op::member).text == ".");

}  // namespace tav

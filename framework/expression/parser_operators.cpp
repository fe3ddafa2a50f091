#include "framework/expression/expression_parser.h"

namespace tav {

namespace {

Op prefixOf(Op op) noexcept {
  switch (op) {
    case Op::minus:
      return Op::negative;
    case Op::plus:
      return Op::positive;
    case Op::logicalNot:
    case Op::distinct:
    case Op::existing:
    case Op::complement:
      return op;
    default:
      return Op::none;
  }
}

bool isPrefixOnly(Op op) noexcept {
  return op == Op::logicalNot || op == Op::distinct || op == Op::existing || op == Op::complement;
}

bool isBetween(Op op) noexcept {
  return op == Op::between || op == Op::notBetween;
}

}  // namespace

bool ExpressionParser::isPending(Op op) const {
  return wantsValue_ && pending_.size() > frames_.back().operators && pending_.back().op == op;
}

bool ExpressionParser::isPieceEmpty() const {
  return values_.size() == frames_.back().values && pending_.size() == frames_.back().operators;
}

/// COUNT(*), COUNT(DISTINCT *)
bool ExpressionParser::isLoneStar() const {
  const Frame& top = frames_.back();
  return token_.op == Op::times && top.open == Open::call && values_.size() == top.values &&
         (pending_.size() == top.operators || isPending(Op::distinct)) &&
         (lexer_.peek() == ')' || lexer_.peek() == ',');
}

void ExpressionParser::operation() {
  const Op op = token_.op;
  const Op prefix = prefixOf(op);
  if (wantsValue_ && isLoneStar()) {
    pushValue(addToken(Kind::star), After::constant);
  } else if (wantsValue_ && prefix != Op::none) {
    pending_.push_back({prefix, true, false, token_.begin});
  } else if (!wantsValue_ && isPrefixOnly(op)) {
    if (sql_ && op == Op::logicalNot) return negatedOperator();
    wantValue();
    pending_.push_back({prefix, true, false, token_.begin});
  } else {
    if (wantsValue_) {
      fail(kValue);
      pushValue(addNothing(Kind::missing), After::constant);
    }
    if (op != Op::logicalAnd || !completesBetween()) pushBinary(op);
  }
  take();
}

/// Whether the AND at hand belongs to a BETWEEN.
bool ExpressionParser::completesBetween() {
  reduceTo(operatorOf(Op::between).binding + 1);
  if (pending_.size() == frame().operators) return false;
  Pending& top = pending_.back();
  if (!isBetween(top.op) || top.hasAnd) return false;
  top.hasAnd = true;
  const Pending rest = top;
  reduce();
  pending_.push_back(rest);  // what follows the AND joins the same node
  wantsValue_ = true;
  return true;
}

void ExpressionParser::pushBinary(Op op) {
  reduceTo(operatorOf(op).binding);
  pending_.push_back({op, false, false, token_.begin});
  wantsValue_ = true;
}

/// Builds the nodes of the pending operators that bind at least so tight.
void ExpressionParser::reduceTo(std::uint8_t binding) {
  while (pending_.size() > frame().operators && operatorOf(pending_.back().op).binding >= binding) reduce();
}

void ExpressionParser::reduce() {
  const Pending made = pending_.back();
  pending_.pop_back();
  const std::string_view name = operatorOf(made.op).text;
  const NodeId right = values_.back();
  if (made.prefix) {
    const NodeId id = add(Kind::prefix, name, made.begin, made.begin);
    append(id, right);
    values_.back() = id;
    return;
  }
  if (isBetween(made.op) && !made.hasAnd) fail("AND");
  values_.pop_back();
  NodeId& left = values_.back();
  // A chain of equal operators grows one node.
  if (node(left).kind != Kind::operation || node(left).op != made.op) {
    const NodeId id = add(Kind::operation, name, node(left).begin, node(left).begin);
    node(id).op = made.op;
    append(id, left);
    left = id;
  }
  append(left, right);
}

// Dots that join no names.

void ExpressionParser::dot() {
  const After after = after_;
  if (wantsValue_ || after == After::constant) return skip(expectation());
  take();
  const bool named = token_.bare || token_.kind == Token::Kind::reference || token_.kind == Token::Kind::call;
  if (after == After::reference || !named) return fail("a name");
  // What follows a bracket: a property of its value, or a method that is called on it.
  pushBinary(Op::member);
  if (token_.kind == Token::Kind::call) return method();
  pushValue(addToken(Kind::name), After::closed);
  take();
}

void ExpressionParser::method() {
  if (token_.parts > 1) {
    const std::string_view before = token_.qualifier();
    pushValue(add(Kind::name, before, token_.begin, token_.begin + before.size()), After::closed);
    pushBinary(Op::member);
    token_.text = token_.text.substr(token_.lastPart);
    token_.lastPart = 0;
    token_.parts = 1;
  }
  call();
}

}  // namespace tav

#include "framework/expression/tree.h"

namespace tav {

namespace {

std::string_view headOf(const ExpressionNode& node) {
  switch (node.kind) {
    case ExpressionNode::Kind::tuple:
      return "()";
    case ExpressionNode::Kind::set:
      return "{}";
    case ExpressionNode::Kind::caseOf:
      return "CASE";
    case ExpressionNode::Kind::empty:
      return "_";
    case ExpressionNode::Kind::missing:
      return "?";
    default:
      return node.name;
  }
}

bool hasParts(ExpressionNode::Kind kind) {
  return kind >= ExpressionNode::Kind::call && kind <= ExpressionNode::Kind::clause;
}

}  // namespace

std::string dump(const ExpressionTree& tree) {
  std::string text;
  // What is left to write: a node, or the end of the one before its brothers.
  struct Left {
    std::uint32_t node;
    bool close;
  };
  std::vector<Left> left;
  if (tree.root != ExpressionNode::kNone) left.push_back({tree.root, false});
  while (!left.empty()) {
    const Left item = left.back();
    left.pop_back();
    if (item.close) {
      text += ')';
      continue;
    }
    const ExpressionNode& node = tree.nodes[item.node];
    if (!text.empty()) text += ' ';
    if (node.kind == ExpressionNode::Kind::name) text += ':';
    if (node.next != ExpressionNode::kNone) left.push_back({node.next, false});
    if (hasParts(node.kind)) {
      text += '(';
      left.push_back({item.node, true});
      if (node.first != ExpressionNode::kNone) left.push_back({node.first, false});
    }
    text += headOf(node);
  }
  return text;
}

}  // namespace tav

#pragma once

// What holds for the tree of any text at all.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "framework/expression/nodes.h"
#include "framework/expression/parser.h"

namespace tav::fuzz {

inline void require(bool holds) {
  if (!holds) std::abort();
}

/// The references in the order of visiting. Every node is reached once and its text is a piece of the source.
inline std::vector<std::string_view> references(const ExpressionTree& tree) {
  std::vector<std::string_view> found;
  std::size_t reached = 0;
  std::vector<std::uint32_t> left;
  if (tree.root != ExpressionNode::kNone) left.push_back(tree.root);
  while (!left.empty()) {
    const ExpressionNode& node = tree.nodes[left.back()];
    left.pop_back();
    ++reached;
    require(node.begin <= node.end && node.end <= tree.source.size());
    if (node.kind == ExpressionNode::Kind::reference) found.push_back(node.name);
    if (node.next != ExpressionNode::kNone) left.push_back(node.next);
    if (node.first != ExpressionNode::kNone) left.push_back(node.first);
  }
  require(reached == tree.nodes.size());
  return found;
}

inline void checkExpression(std::string_view text, ExpressionLanguage language) {
  const ExpressionTree tree = parseExpression(text, language);
  require(!tree.fault || tree.fault.offset <= text.size());
  const std::vector<std::string_view> found = references(tree);
  for (const std::string_view reference : found) {
    const TAVElementNode node(reference);
    require(node.getElementNamePartCount() > 0);
    std::string joined;
    for (std::int32_t i = 0; i < node.getElementNamePartCount(); ++i)
      (joined += i > 0 ? "." : "") += node.getElementNamePartByPosition(i)->getText();
    require(joined == reference);
  }
  dump(tree);
  if (tree.unquoted) return;
  const std::string behind = "[first] + * " + std::string(text);
  const ExpressionTree again = parseExpression(behind, language);
  require(static_cast<bool>(again.fault));
  std::vector<std::string_view> expected{"[first]"};
  expected.insert(expected.end(), found.begin(), found.end());
  require(references(again) == expected);
}

}  // namespace tav::fuzz

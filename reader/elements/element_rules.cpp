#include "reader/elements/element_rules.h"

namespace tav {
namespace {

constexpr ElementRule kByContent{};

}  // namespace

const RuleTree& RuleTree::get() {
  static const RuleTree tree;
  return tree;
}

RuleTree::RuleTree() : rules_(kRoot + 1, &kByContent) {
  for (const ElementRules* rules : {&kAnywhereRules, &kDatabaseRules, &kViewRules, &kDimensionRules,
                                    &kCubeRules, &kMeasureGroupRules, &kMiningRules})
    add(*rules);
}

void RuleTree::add(const ElementRules& rules) {
  const Node from = &rules == &kAnywhereRules ? kAnywhere : addPath(kRoot, rules.below);
  for (const ElementRule& rule : rules.rules) rules_[addPath(from, rule.path)] = &rule;
}

RuleTree::Node RuleTree::addPath(Node from, std::string_view path) {
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    const auto [place, isNew] =
        nodes_.try_emplace(Key{from, path.substr(0, slash)}, static_cast<Node>(rules_.size()));
    if (isNew) rules_.push_back(&kByContent);
    from = place->second;
    if (slash == std::string_view::npos) break;
    path.remove_prefix(slash + 1);
  }
  return from;
}

RuleTree::Node RuleTree::child(Node parent, std::string_view name) const {
  if (const auto found = nodes_.find(Key{parent, name}); found != nodes_.end()) return found->second;
  const auto anywhere = nodes_.find(Key{kAnywhere, name});
  return anywhere == nodes_.end() ? kUnknown : anywhere->second;
}

}  // namespace tav

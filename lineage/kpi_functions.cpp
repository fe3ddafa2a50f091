#include "lineage/kpi_functions.h"

#include <algorithm>

#include "framework/expression/parser.h"
#include "framework/model/roles.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::string_view kPrefix = "kpi";

/// The part of a KPI that a function gives; empty for other functions.
std::string_view partOfFunction(std::string_view function) {
  for (const KpiPart& part : kKpiParts)
    if (equalNames(function, std::string(kPrefix).append(part.name))) return part.name;
  return {};
}

/// The name of a function is always written out, so where its letters are missing there is nothing to parse.
bool mayCallKpis(std::string_view expression) {
  const auto found = std::search(expression.begin(), expression.end(), kPrefix.begin(), kPrefix.end(),
                                 [](char c, char wanted) { return foldCase(c) == wanted; });
  return found != expression.end();
}

bool isString(std::string_view text) {
  return text.size() >= 2 && (text.front() == '\'' || text.front() == '"') && text.back() == text.front();
}

/// The text of a string, its doubled quotes made single.
std::string textOfString(std::string_view text) {
  const char quote = text.front();
  text = text.substr(1, text.size() - 2);
  std::string value;
  for (std::size_t i = 0; i < text.size(); ++i) {
    value += text[i];
    if (text[i] == quote) ++i;
  }
  return value;
}

std::string key(NodeId cube, std::string_view kpi, std::string_view part) {
  return std::to_string(cube).append("/").append(part).append("/").append(foldedName(kpi));
}

}  // namespace

std::vector<KpiCall> kpiCallsOf(std::string_view expression) {
  std::vector<KpiCall> calls;
  if (!mayCallKpis(expression)) return calls;
  const ExpressionTree tree = parseExpression(expression, ExpressionLanguage::mdx);
  std::vector<const ExpressionNode*> nodes;
  for (const ExpressionNode& node : tree.nodes)
    if (node.kind == ExpressionNode::Kind::call && node.count == 1) nodes.push_back(&node);
  // A piece stands in the tree when it is complete, so an inner call comes before the outer one.
  std::sort(nodes.begin(), nodes.end(),
            [](const ExpressionNode* a, const ExpressionNode* b) { return a->begin < b->begin; });
  for (const ExpressionNode* call : nodes) {
    const std::string_view part = partOfFunction(call->name);
    const ExpressionNode& argument = tree.nodes[call->first];
    const std::string_view name = tree.textOf(argument);
    if (part.empty() || argument.kind != ExpressionNode::Kind::constant || !isString(name)) continue;
    calls.push_back({part, textOfString(name), std::string(tree.textOf(*call))});
  }
  return calls;
}

void KpiValues::add(NodeId cube, std::string_view kpi, std::string_view part, NodeId value) {
  values_.try_emplace(key(cube, kpi, part), value);
}

NodeId KpiValues::find(NodeId cube, const KpiCall& call) const {
  const auto value = values_.find(key(cube, call.kpi, call.part));
  return value == values_.end() ? kNoNode : value->second;
}

}  // namespace tav

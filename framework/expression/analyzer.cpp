#include "framework/expression/analyzer.h"

#include "framework/expression/parser.h"
#include "framework/model/classes/classifier_map.h"
#include "framework/model/lineage_writer.h"

namespace {

using tav::ExpressionNode;
using tav::ExpressionTree;

TAVString pathOfDestination(const TAVFeatureMap& map) {
  return map.destinationFeature ? map.destinationFeature->getPath(true) : TAVString();
}

TAVOperationNode operationNode(const ExpressionTree& tree, const ExpressionNode& call) {
  std::vector<TAVExpressionNode> arguments;
  arguments.reserve(call.count);
  for (std::uint32_t i = call.first; i != ExpressionNode::kNone; i = tree.nodes[i].next)
    arguments.emplace_back(tree.textOf(tree.nodes[i]));
  return {tree.textOf(call), call.name, std::move(arguments)};
}

}  // namespace

TAVExpressionAnalyzer::TAVExpressionAnalyzer(TAVLog* log, TAVExpressionToolType tool,
                                             TAVExpressionLangType language)
    : log_(log), tool_(tool), language_(language) {}

TAVExpressionAnalyzer::~TAVExpressionAnalyzer() = default;

void TAVExpressionAnalyzer::getSrcElements(TAVOperationNode* /*operation*/, TAVVector& /*result*/) {}

TAVCondition* TAVExpressionAnalyzer::getDstCondition(TAVClassifier* /*classifier*/) {
  return nullptr;
}

void TAVExpressionAnalyzer::setDstClassifier(TAVElementNode* /*node*/) {}

void TAVExpressionAnalyzer::setUnknownOperation(TAVOperationNode* /*operation*/) {}

void TAVExpressionAnalyzer::startStatement(TAVStatementNode* /*statement*/) {}

bool TAVExpressionAnalyzer::isStarCandidate(TAVFeature* /*feature*/, bool /*qualified*/) {
  return true;
}

bool TAVExpressionAnalyzer::isClassifierDefined(TAVClassifier* /*classifier*/) {
  return false;
}

bool TAVExpressionAnalyzer::optimizeSimpleExpression() {
  return false;
}

void TAVExpressionAnalyzer::setParsingError(const TAVString& feature, const TAVString& place,
                                            const TAVString& expected) {
  if (!log_) return;
  const TAVString subject = feature.empty() ? TAVString("Expression") : "Expression of '" + feature + "'";
  log_->logEvent(
      {subject + ", " + place + ": expected " + expected, "TAVEXPR_W0001", tav::kSeverityWarning, {}});
}

void TAVExpressionAnalyzer::parse(TAVFeatureMap* map) {
  if (!map) return;
  const TAVString text = map->operation;  // a visit may change the map
  const bool sql = language_.value() == TAVExpressionLangType::kSql;
  const ExpressionTree tree =
      tav::parseExpression(text, sql ? tav::ExpressionLanguage::sql : tav::ExpressionLanguage::mdx);
  if (tree.fault)
    setParsingError(pathOfDestination(*map), tav::placeInText(text, tree.fault.offset), tree.fault.expected);
  TAVStatementNode statement(tree.source);
  startStatement(&statement);

  const TAVVector scope;
  std::vector<std::uint32_t> left;
  if (tree.root != ExpressionNode::kNone) left.push_back(tree.root);
  while (!left.empty()) {
    const ExpressionNode& node = tree.nodes[left.back()];
    left.pop_back();
    if (node.next != ExpressionNode::kNone) left.push_back(node.next);
    if (node.first != ExpressionNode::kNone) left.push_back(node.first);
    TAVVector result;
    if (node.kind == ExpressionNode::Kind::reference) {
      TAVElementNode element(node.name);
      getSrcElements(&element, scope, result);
    } else if (node.kind == ExpressionNode::Kind::call) {
      TAVOperationNode operation = operationNode(tree, node);
      getSrcElements(&operation, result);
    }
    for (void* feature : result) tav::addSource(*map, *static_cast<TAVFeature*>(feature));
  }
}

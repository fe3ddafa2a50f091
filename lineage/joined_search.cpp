#include "lineage/joined_search.h"

#include <algorithm>
#include <unordered_map>

#include "framework/std/printable.h"
#include "framework/std/text.h"
#include "messages/message.h"

namespace tav {
namespace {

class StartSearch {
 public:
  StartSearch(const JoinedGraph& graph, std::string_view name, LineageDirection direction)
      : graph_(graph), scope_(splitModel(graph, name)), direction_(direction) {}

  FoundStarts run() {
    for (std::uint32_t model = 0; model < graph_.models().size(); ++model)
      if (isAsked(model)) ask(model);
    for (const auto& [model, nodes] : matches_) add(model, nodes);
    if (found_.nodes.empty() && !meanings_.empty())
      fail(Message::ambiguousName, {printable(scope_.name), nodeListText(meanings_)});
    if (found_.nodes.empty()) failUnknown();
    std::sort(found_.nodes.begin(), found_.nodes.end());
    found_.nodes.erase(std::unique(found_.nodes.begin(), found_.nodes.end()), found_.nodes.end());
    return std::move(found_);
  }

 private:
  [[nodiscard]] bool isAsked(std::uint32_t model) const { return !scope_.model || scope_.model == model; }

  /// What only holds the name as a part is not meant where another model has something of that name.
  void ask(std::uint32_t model) {
    NameMatch match = matchNodes(graph_.graph(model), scope_.name, direction_);
    if (match.nodes.empty() || match.fit > best_) return;
    if (match.fit < best_) matches_.clear();
    best_ = match.fit;
    matches_.emplace_back(model, std::move(match.nodes));
  }

  void add(std::uint32_t model, const std::vector<NodeId>& nodes) {
    if (nodes.size() == 1) {
      found_.nodes.push_back(graph_.idOf(model, nodes.front()));
      return;
    }
    std::vector<std::string> texts;
    texts.reserve(nodes.size());
    for (const NodeId id : nodes) texts.push_back(textOf(model, id));
    meanings_.insert(meanings_.end(), texts.begin(), texts.end());
    found_.ambiguous.push_back(
        messageText(Message::ambiguousName, {printable(scope_.name), nodeListText(texts)}));
  }

  [[nodiscard]] std::string textOf(std::uint32_t model, NodeId id) const {
    const std::string_view name = graph_.modelName(graph_.idOf(model, id));
    const std::string text = nodeText(graph_.graph(model), id);
    return name.empty() ? text : text + " (model " + std::string(name) + ")";
  }

  [[noreturn]] void failUnknown() const {
    struct Near {
      std::size_t distance;
      std::uint32_t model;
      NodeId node;
    };
    std::vector<Near> all;
    for (std::uint32_t model = 0; model < graph_.models().size(); ++model) {
      if (!isAsked(model)) continue;
      for (const NearNode& near : nearestNodes(graph_.graph(model), scope_.name, kNearest))
        all.push_back({near.distance, model, near.node});
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Near& a, const Near& b) { return a.distance < b.distance; });
    std::vector<std::string> list;
    for (const Near& near : all) {
      std::string text = textOf(near.model, near.node);
      if (list.size() < kNearest && std::find(list.begin(), list.end(), text) == list.end())
        list.push_back(std::move(text));
    }
    const bool isOne = scope_.model || graph_.models().size() == 1;
    fail(isOne ? Message::unknownName : Message::unknownInModels,
         {printable(scope_.name), (list.empty() ? "" : "; the nearest") + nodeListText(list),
          std::to_string(graph_.models().size())});
  }

  const JoinedGraph& graph_;
  ScopedName scope_;
  LineageDirection direction_;
  NameFit best_ = NameFit::part;
  std::vector<std::pair<std::uint32_t, std::vector<NodeId>>> matches_;
  std::vector<std::string> meanings_;
  FoundStarts found_;
};

}  // namespace

ScopedName splitModel(const JoinedGraph& graph, std::string_view name) {
  std::unordered_map<std::string, std::uint32_t> models;
  if (graph.namesModels())
    for (std::uint32_t model = 0; model < graph.models().size(); ++model)
      models.emplace(foldedName(graph.models()[model].name), model);
  for (std::size_t at = name.find(kModelSeparator); at != name.npos; at = name.find(kModelSeparator, at + 1))
    if (const auto found = models.find(foldedName(name.substr(0, at))); found != models.end())
      return {found->second, name.substr(at + kModelSeparator.size())};
  return {std::nullopt, name};
}

FoundStarts findStarts(const JoinedGraph& graph, std::string_view name, LineageDirection direction) {
  return StartSearch(graph, name, direction).run();
}

JoinedNames::JoinedNames(const JoinedGraph& graph) : graph_(graph) {
  names_.reserve(graph.models().size());
  for (const JoinedGraph::Model& model : graph.models()) names_.emplace_back(*model.graph);
}

std::string JoinedNames::nameOf(JoinedId id) const {
  const auto [model, node] = graph_.placeOf(id);
  if (!graph_.namesModels()) return names_[model].nameOf(node);
  const std::string_view name = graph_.modelName(id);
  if (name.empty()) return graph_.graph(model).path(node);
  return std::string(name).append(kModelSeparator).append(names_[model].nameOf(node));
}

}  // namespace tav

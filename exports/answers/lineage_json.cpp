#include <algorithm>
#include <functional>

#include "exports/answers/lineage_text.h"
#include "exports/answers/notes.h"
#include "framework/std/json_writer.h"

namespace tav {
namespace {

class JsonPart {
 public:
  JsonPart(const JoinedGraph& graph, std::ostream& out) : graph_(graph), out_(out) {}

  void write(const LineageQuestion& question) {
    LineageWalk walk = question.walk;
    walk.members = true;
    collect(lineageTree(graph_, question.starts, walk));
    const bool upstream = walk.direction == LineageDirection::upstream;
    json_.begin('{');
    json_.member("format", graph_.namesModels() ? "xmla-lineage-models/1" : "xmla-lineage/1");
    json_.member("direction", upstream ? "upstream" : "downstream");
    if (graph_.namesModels())
      writeModels(question.starts);
    else
      json_.member("start", question.starts.front());
    writeEnd();
  }

  void writeWhole() {
    collectAll();
    json_.begin('{');
    json_.member("format", graph_.namesModels() ? "xmla-graph-models/1" : "xmla-graph/1");
    if (graph_.namesModels()) writeModelNames();
    writeEnd();
  }

 private:
  struct ModelEdge {
    std::uint32_t model;
    const LineageEdge* edge;

    friend bool operator==(const ModelEdge&, const ModelEdge&) = default;
  };

  /// The nodes and edges of a walk, each once.
  void collect(const std::vector<LineageTreeLine>& lines) {
    for (const LineageTreeLine& line : lines) {
      nodes_.push_back(line.node);
      if (line.edge) edges_.push_back({line.model, line.edge});
    }
    std::sort(nodes_.begin(), nodes_.end());
    nodes_.erase(std::unique(nodes_.begin(), nodes_.end()), nodes_.end());
    std::sort(edges_.begin(), edges_.end(), [](const ModelEdge& a, const ModelEdge& b) {
      return a.model != b.model ? a.model < b.model : std::less<>()(a.edge, b.edge);
    });
    edges_.erase(std::unique(edges_.begin(), edges_.end()), edges_.end());
  }

  /// The nodes and edges of all models; a node that several have once, where the first of them has it.
  void collectAll() {
    for (std::uint32_t model = 0; model < graph_.models().size(); ++model) {
      const WalkGraph& graph = graph_.graph(model);
      for (NodeId node = 0; node < graph.nodes().size(); ++node) {
        const JoinedId id = graph_.idOf(model, node);
        if (graph_.placeOf(id).model == model) nodes_.push_back(id);
      }
      for (const LineageEdge& edge : graph.edges()) edges_.push_back({model, &edge});
    }
  }

  void writeEnd() {
    writeList("nodes", nodes_, [&](JoinedId id) { writeNode(id); });
    writeList("edges", edges_, [&](const ModelEdge& edge) { writeEdge(edge); });
    writeNotesJson(json_, graph_);
    json_.close('}');
    out_ << text_ << "\n";
  }

  void writeModelNames() {
    json_.open("models", '[');
    for (const JoinedGraph::Model& model : graph_.models()) json_.value(model.name);
    json_.close(']');
  }

  void writeModels(const std::vector<JoinedId>& starts) {
    writeModelNames();
    json_.open("starts", '[');
    for (const JoinedId start : starts) json_.value(start);
    json_.close(']');
  }

  template <class Items, class F> void writeList(std::string_view name, const Items& items, F write) {
    json_.open(name, '[');
    for (const auto& item : items) {
      json_.line();
      write(item);
      out_ << text_;
      text_.clear();
    }
    json_.close(']');
  }

  void writeNode(JoinedId id) {
    const auto [model, place] = graph_.placeOf(id);
    const WalkGraph& graph = graph_.graph(model);
    const LineageNode& node = graph.node(place);
    json_.open('{');
    json_.member("id", id);
    json_.optional("model", graph_.modelName(id));
    json_.member("kind", nodeKindName(node.kind));
    json_.member("name", graph.name(place));
    json_.member("qualifiedName", graph.qualifiedName(place));
    json_.member("path", graph.path(place));
    if (node.owner != kNoNode) json_.member("owner", graph_.idOf(model, node.owner));
    json_.optional("expression", graph.expression(place));
    json_.optional("language", graph.language(place));
    json_.optional("aggregation", graph.aggregation(place));
    writeOpenNames(graph.openNames(place));
    json_.close('}');
  }

  void writeOpenNames(const std::vector<OpenNameText>& names) {
    if (names.empty()) return;
    json_.open("openNames", '[');
    for (const OpenNameText& name : names) {
      json_.open('{');
      writeOpenNameJson(json_, name);
      json_.close('}');
    }
    json_.close(']');
  }

  void writeEdge(const ModelEdge& one) {
    const LineageEdge& edge = *one.edge;
    json_.open('{');
    json_.member("from", graph_.idOf(one.model, edge.from));
    json_.member("to", graph_.idOf(one.model, edge.to));
    json_.member("kind", edgeKindName(edge.kind));
    json_.optional("text", graph_.graph(one.model).edgeText(edge));
    if (edge.foundByGraph) json_.member("foundByGraph", true);
    if (edge.replaces) json_.member("replaces", true);
    json_.close('}');
  }

  const JoinedGraph& graph_;
  std::ostream& out_;
  std::vector<JoinedId> nodes_;
  std::vector<ModelEdge> edges_;
  std::string text_;
  JsonWriter json_{text_};
};

}  // namespace

void writeLineageJson(const JoinedGraph& graph, const LineageQuestion& question, std::ostream& out) {
  JsonPart(graph, out).write(question);
}

void writeGraphJson(const JoinedGraph& graph, std::ostream& out) {
  JsonPart(graph, out).writeWhole();
}

}  // namespace tav

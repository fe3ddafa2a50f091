#include "exports/answers/lineage_text.h"
#include "exports/answers/notes.h"
#include "framework/std/json_writer.h"
#include "lineage/subgraph.h"

namespace tav {
namespace {

class JsonPart {
 public:
  JsonPart(const LineageGraph& graph, std::ostream& out) : graph_(graph), out_(out) {}

  void write(const LineageQuestion& question) {
    LineageWalk walk = question.walk;
    walk.members = true;
    const Subgraph part = subgraphOf(lineageTree(graph_, question.start, walk));
    const bool upstream = walk.direction == LineageDirection::upstream;
    json_.begin('{');
    json_.member("format", "xmla-lineage/1");
    json_.member("direction", upstream ? "upstream" : "downstream");
    json_.member("start", question.start);
    writeList("nodes", part.nodes, [&](NodeId id) { writeNode(id); });
    writeList("edges", part.edges, [&](const LineageEdge* edge) { writeEdge(*edge); });
    writeNotesJson(json_, graph_);
    json_.close('}');
    out_ << text_ << "\n";
  }

 private:
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

  void writeNode(NodeId id) {
    const LineageNode& node = graph_.node(id);
    json_.open('{');
    json_.member("id", id);
    json_.member("kind", nodeKindName(node.kind));
    json_.member("name", graph_.name(id));
    json_.member("qualifiedName", graph_.qualifiedName(id));
    json_.member("path", graph_.path(id));
    if (node.owner != kNoNode) json_.member("owner", node.owner);
    json_.optional("expression", graph_.expression(id));
    json_.optional("language", graph_.language(id));
    json_.optional("aggregation", graph_.aggregation(id));
    writeOpenNames(id);
    json_.close('}');
  }

  void writeOpenNames(NodeId id) {
    const std::vector<OpenNameText> names = graph_.openNames(id);
    if (names.empty()) return;
    json_.open("openNames", '[');
    for (const OpenNameText& name : names) {
      json_.open('{');
      writeOpenNameJson(json_, name);
      json_.close('}');
    }
    json_.close(']');
  }

  void writeEdge(const LineageEdge& edge) {
    json_.open('{');
    json_.member("from", edge.from);
    json_.member("to", edge.to);
    json_.member("kind", edgeKindName(edge.kind));
    json_.optional("text", graph_.edgeText(edge));
    if (edge.foundByGraph) json_.member("foundByGraph", true);
    if (edge.replaces) json_.member("replaces", true);
    json_.close('}');
  }

  const LineageGraph& graph_;
  std::ostream& out_;
  std::string text_;
  JsonWriter json_{text_};
};

}  // namespace

void writeLineageJson(const LineageGraph& graph, const LineageQuestion& question, std::ostream& out) {
  JsonPart(graph, out).write(question);
}

}  // namespace tav

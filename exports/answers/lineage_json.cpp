#include "exports/answers/lineage_text.h"
#include "framework/std/json_text.h"
#include "lineage/subgraph.h"

namespace tav {
namespace {

class JsonPart {
 public:
  JsonPart(const LineageGraph& graph, std::ostream& out) : graph_(graph), out_(out) {}

  void write(const LineageQuestion& question) {
    const Subgraph part =
        subgraphOf(lineageTree(graph_, question.start, question.direction, question.depth, true));
    const bool upstream = question.direction == LineageDirection::upstream;
    out_ << R"({"format":"xmla-lineage/1","direction":")" << (upstream ? "upstream" : "downstream")
         << R"(","start":)" << question.start << R"(,"nodes":[)";
    writeList(part.nodes, [&](NodeId id) { appendNode(id); });
    out_ << R"(],"edges":[)";
    writeList(part.edges, [&](const LineageEdge* edge) { appendEdge(*edge); });
    out_ << "]}\n";
  }

 private:
  template <class Items, class F> void writeList(const Items& items, F append) {
    bool first = true;
    for (const auto& item : items) {
      text_ = first ? "\n" : ",\n";
      first = false;
      append(item);
      out_ << text_;
    }
  }

  void appendNode(NodeId id) {
    const LineageNode& node = graph_.node(id);
    text_.append("{\"id\":").append(std::to_string(id));
    member("kind", nodeKindName(node.kind));
    member("name", graph_.name(id));
    member("qualifiedName", graph_.qualifiedName(id));
    member("path", graph_.path(id));
    if (node.owner != kNoNode) text_.append(",\"owner\":").append(std::to_string(node.owner));
    optional("expression", graph_.expression(id));
    optional("language", graph_.language(id));
    optional("aggregation", graph_.aggregation(id));
    names(graph_.unresolved(id));
    text_ += '}';
  }

  void appendEdge(const LineageEdge& edge) {
    text_.append("{\"from\":").append(std::to_string(edge.from));
    text_.append(",\"to\":").append(std::to_string(edge.to));
    member("kind", edgeKindName(edge.kind));
    if (edge.foundByGraph) text_ += ",\"foundByGraph\":true";
    text_ += '}';
  }

  void member(std::string_view name, std::string_view value) {
    text_.append(",\"").append(name).append("\":");
    appendJsonText(text_, value);
  }

  void optional(std::string_view name, std::string_view value) {
    if (!value.empty()) member(name, value);
  }

  void names(const std::vector<std::string>& unresolved) {
    if (unresolved.empty()) return;
    text_ += ",\"unresolved\":";
    char separator = '[';
    for (const std::string& name : unresolved) {
      text_ += separator;
      separator = ',';
      appendJsonText(text_, name);
    }
    text_ += ']';
  }

  const LineageGraph& graph_;
  std::ostream& out_;
  std::string text_;
};

}  // namespace

void writeLineageJson(const LineageGraph& graph, const LineageQuestion& question, std::ostream& out) {
  JsonPart(graph, out).write(question);
}

}  // namespace tav

#include "exports/dot.h"

#include "exports/answers/lineage_text.h"
#include "exports/boxes.h"
#include "exports/formats.h"
#include "framework/std/printable.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::string_view kHead = R"(digraph lineage {
  graph [rankdir=LR, ranksep=1.2, nodesep=0.3, fontname="Helvetica,Arial,sans-serif"];
  node [shape=plain, fontname="Helvetica,Arial,sans-serif", fontsize=11];
  edge [color="#5b6b7b", arrowsize=0.7, fontname="Helvetica,Arial,sans-serif", fontsize=9];
)";

/// How edges look: by the way that values go, or by what the relation does.
std::string_view styleOf(EdgeKind kind) {
  switch (rowOf(kind).sense) {
    case RelationSense::gives:
      if (kind == EdgeKind::computed) return "style=dashed";
      return kind == EdgeKind::direct ? "" : "penwidth=1.6";
    case RelationSense::narrows:
    case RelationSense::secures:
      return "style=dotted, color=\"#a05a00\"";
    case RelationSense::shows:
      return "style=dotted";
    case RelationSense::joins:
      return "style=dotted, color=\"#1d7a6b\", arrowhead=none";
    case RelationSense::formats:
      return "style=dotted, color=\"#9aa5b1\", arrowhead=odot";
    default:
      return "style=dotted, color=\"#7a3fb0\"";
  }
}

std::string_view colourOf(NodeKind kind) {
  if (kind <= NodeKind::databaseColumn) return "#d9e2ec";
  if (kind <= NodeKind::condition) return "#d8ead8";
  if (kind <= NodeKind::attribute) return "#fbe8c8";
  if (kind <= NodeKind::linkedMeasure) return "#cfe3f7";
  if (kind <= NodeKind::kpiValue) return "#e5d8f3";
  if (kind <= NodeKind::perspective) return "#f3d6d6";
  if (kind == NodeKind::role || kind == NodeKind::permission) return "#f7dcc0";
  return "#eceff2";
}

/// Text inside a label in angle brackets. What is no UTF-8 would make the whole file unreadable.
std::string labelText(std::string_view text) {
  std::string label;
  for (const char character : mendedUtf8(printable(text))) {
    if (character == '<')
      label += "&lt;";
    else if (character == '>')
      label += "&gt;";
    else if (character == '&')
      label += "&amp;";
    else if (character == '"')
      label += "&quot;";
    else
      label += character;
  }
  // An empty cell is an error to some versions.
  return label.empty() ? " " : label;
}

class DotText {
 public:
  DotText(const WalkGraph& graph, std::ostream& out) : graph_(graph), out_(out) {}

  void write(const Subgraph& part) {
    rowOf_.assign(graph_.nodes().size(), kNoNode);
    out_ << kHead;
    for (const Box& box : boxesOf(graph_, part)) writeBox(box);
    for (const LineageEdge* edge : edgesToDraw(graph_, part)) writeEdge(*edge);
    out_ << "}\n";
  }

 private:
  void writeBox(const Box& box) {
    const LineageNode& node = graph_.node(box.node);
    out_
        << "  n" << box.node
        << R"( [label=<<table border="0" cellborder="1" cellspacing="0" cellpadding="4"><tr><td port="t" bgcolor=")"
        << colourOf(node.kind) << "\"><b>" << labelText(boxText(graph_, box.node, box.node))
        << R"(</b><br/><font point-size="8">)" << labelText(subtitle(box.node)) << "</font></td></tr>";
    for (const NodeId row : box.rows) {
      rowOf_[row] = box.node;
      out_ << "<tr><td port=\"r" << row << "\" align=\"left\">" << labelText(boxText(graph_, row, box.node))
           << "</td></tr>";
    }
    out_ << "</table>>];\n";
  }

  [[nodiscard]] std::string subtitle(NodeId id) const {
    std::string text(nodeKindLabel(graph_.node(id).kind));
    const NodeId cube = graph_.cubeOf(id);
    if (cube != kNoNode && cube != id) text.append(" of cube ").append(graph_.name(cube));
    if (const DatabaseAddress* database = graph_.database(id)) {
      text.append(" in ").append(database->database);
      if (const std::string schema = graph_.schema(id); !schema.empty()) text.append(".").append(schema);
    }
    return text;
  }

  void writeEdge(const LineageEdge& edge) {
    out_ << "  ";
    writeEnd(edge.from);
    out_ << " -> ";
    writeEnd(edge.to);
    const std::string_view style = styleOf(edge.kind);
    const std::string_view label = edgeLabel(graph_, edge);
    if (!label.empty())
      out_ << " [" << style << ", label=\"" << label << "\"]";
    else if (!style.empty())
      out_ << " [" << style << "]";
    out_ << ";\n";
  }

  void writeEnd(NodeId id) {
    if (rowOf_[id] == kNoNode)
      out_ << 'n' << id << ":t";
    else
      out_ << 'n' << rowOf_[id] << ":r" << id;
  }

  const WalkGraph& graph_;
  std::ostream& out_;
  std::vector<NodeId> rowOf_;  // by node: the box that it is a row of
};

}  // namespace

void writeDot(const WalkGraph& graph, const Subgraph& part, std::ostream& out) {
  DotText(graph, out).write(part);
}

void writeLineageDot(const WalkGraph& graph, const LineageQuestion& question, std::ostream& out) {
  writeDot(graph, subgraphOf(lineageTree(graph, question.starts.front(), shortened(question.walk))), out);
}

extern const ExportFormat kDotFormat{
    .name = "dot",
    .description = "lineage as a drawing for Graphviz",
    .write =
        [](const DetailedModel& model, const ExportOptions& options, std::ostream& out) {
          const LineageGraph graph(model, options.map);
          writeDot(graph, subgraphAround(graph, options.from, options.to), out);
        },
    .extension = ".dot",
    .takesNames = true};

}  // namespace tav

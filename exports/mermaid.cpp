#include "exports/boxes.h"
#include "exports/formats.h"
#include "framework/std/printable.h"
#include "framework/std/text.h"

namespace tav {
namespace {

/// How edges look: by the way that values go, or by what the relation does.
std::string_view arrowOf(EdgeKind kind) {
  switch (rowOf(kind).sense) {
    case RelationSense::gives:
      if (kind == EdgeKind::computed) return " -.-> ";
      return kind == EdgeKind::direct ? " --> " : " ==> ";
    case RelationSense::shows:
      return " -.- ";
    case RelationSense::narrows:
    case RelationSense::secures:
      return " -.-x ";
    case RelationSense::joins:
      return " --- ";
    default:
      return " -.-o ";
  }
}

/// A label between double quotes, with everything that Mermaid, Markdown or HTML could take for a sign as a
/// numbered entity.
std::string label(std::string_view text) {
  constexpr std::string_view kSigns = "\"#&<>[]{}()|`\\*_~;$";
  std::string result = "\"";
  for (const char character : mendedUtf8(printable(text))) {
    if (kSigns.find(character) != kSigns.npos)
      result.append("#").append(std::to_string(static_cast<int>(character))).append(";");
    else
      result += character;
  }
  // Mermaid takes an empty label for a missing one.
  return result.size() == 1 ? "\" \"" : result + "\"";
}

class MermaidText {
 public:
  MermaidText(const LineageGraph& graph, std::ostream& out) : graph_(graph), out_(out) {}

  void write(const Subgraph& part) {
    out_ << "flowchart LR\n";
    for (const Box& box : boxesOf(graph_, part)) writeBox(box);
    for (const LineageEdge* edge : edgesToDraw(graph_, part)) writeEdge(*edge);
  }

 private:
  void writeBox(const Box& box) const {
    const LineageNode& node = graph_.node(box.node);
    const std::string title =
        std::string(nodeKindLabel(node.kind)).append(" ").append(boxText(graph_, box.node, box.node));
    if (box.rows.empty()) {
      out_ << "  n" << box.node << "[" << label(title) << "]\n";
      return;
    }
    out_ << "  subgraph n" << box.node << " [" << label(title) << "]\n";
    for (const NodeId row : box.rows) writeRow(row, box.node);
    out_ << "  end\n";
  }

  void writeRow(NodeId id, NodeId box) const {
    const bool column = graph_.node(id).kind == NodeKind::databaseColumn;
    out_ << "    n" << id << (column ? "[(" : "[") << label(boxText(graph_, id, box)) << (column ? ")]" : "]")
         << "\n";
  }

  void writeEdge(const LineageEdge& edge) const {
    const std::string_view words =
        edge.kind == EdgeKind::aggregated ? std::string_view() : edgeLabel(graph_, edge);
    std::string_view arrow = arrowOf(edge.kind);
    if (!words.empty()) arrow.remove_suffix(1);
    out_ << "  n" << edge.from << arrow;
    if (!words.empty()) out_ << "|" << label(words) << "| ";
    out_ << "n" << edge.to << "\n";
  }

  const LineageGraph& graph_;
  std::ostream& out_;
};

}  // namespace

extern const ExportFormat kMermaidFormat{
    .name = "mermaid",
    .description = "lineage as a drawing for Mermaid, which Markdown pages show",
    .write =
        [](const DetailedModel& model, const ExportOptions& options, std::ostream& out) {
          const LineageGraph graph(model, options.map);
          MermaidText(graph, out).write(subgraphAround(graph, options.from, options.to));
        },
    .extension = ".mmd",
    .takesNames = true};

}  // namespace tav

#include "exports/answers/lineage_text.h"

#include <algorithm>
#include <vector>

#include "exports/answers/notes.h"
#include "framework/std/printable.h"
#include "lineage/gap_reason.h"

namespace tav {
namespace {

constexpr std::string_view kBar = "│  ";
constexpr std::string_view kGap = "   ";
constexpr std::string_view kBranch = "├─ ";
constexpr std::string_view kLastBranch = "└─ ";
constexpr std::string_view kIndent = "    ";
/// What lies deeper is not indented further, or a long chain would be a triangle of blanks.
constexpr std::uint32_t kDeepest = 60;

class TreeText {
 public:
  TreeText(const LineageGraph& graph, const LineageQuestion& question, std::ostream& out)
      : graph_(graph),
        upstream_(question.walk.direction == LineageDirection::upstream),
        lines_(lineageTree(graph, question.start, question.walk)),
        hasMore_(lines_.size()),
        inTree_(graph.nodes().size()),
        out_(out) {
    for (const LineageTreeLine& line : lines_) inTree_[line.node] = true;
  }

  void write() {
    findLastBranches();
    for (std::size_t i = 0; i < lines_.size(); ++i) writeLine(i);
    writeCubes();
  }

 private:
  /// Whether a later line hangs on the same one: seen from behind, the nearest line of the same depth with
  /// none of a lesser depth between.
  void findLastBranches() {
    std::vector<bool> open;
    for (std::size_t i = lines_.size(); i-- > 0;) {
      const std::size_t depth = lines_[i].depth;
      if (open.size() < depth + 1) open.resize(depth + 1);
      hasMore_[i] = open[depth];
      open[depth] = true;
      open.resize(depth + 1);
    }
  }

  void writeLine(std::size_t i) {
    const LineageTreeLine& line = lines_[i];
    bars_.resize(std::min(line.depth > 0 ? line.depth - 1 : 0, kDeepest));
    writeBars();
    if (line.depth > 0) {
      out_ << (hasMore_[i] ? kBranch : kLastBranch);
      bars_.push_back(hasMore_[i]);
    }
    out_ << edgeText(line) << printable(graph_.qualifiedName(line.node)) << "  " << describe(line.node)
         << stateText(line.state) << "\n";
    if (line.state == LineageTreeLine::State::whole) {
      const bool hasChildren = i + 1 < lines_.size() && lines_[i + 1].depth > line.depth;
      writeExpression(graph_.expression(line.node), hasChildren);
      writeOpenNames(line.node, hasChildren);
    }
  }

  void writeBars() const {
    for (const bool bar : bars_) out_ << (bar ? kBar : kGap);
  }

  /// The lines of an expression as they are written, without the indentation that all of them have.
  void writeExpression(std::string_view text, bool hasChildren) const {
    const std::vector<std::string_view> lines = linesOf(text);
    const std::size_t margin = marginOf(lines);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      writeBars();
      out_ << (hasChildren ? kBar : kGap) << (i == 0 ? "= " : "  ")
           << printable(lines[i].substr(i == 0 ? 0 : std::min(margin, lines[i].size()))) << "\n";
    }
  }

  void writeOpenNames(NodeId id, bool hasChildren) const {
    for (const OpenNameText& name : graph_.openNames(id)) {
      writeBars();
      out_ << (hasChildren ? kBar : kGap) << "? " << printable(name.name) << ": "
           << printable(openNameWords(name)) << "\n";
    }
  }

  static std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    text.remove_prefix(std::min(begin, text.size()));
    while (!text.empty()) {
      std::string_view line = text.substr(0, text.find('\n'));
      text.remove_prefix(std::min(text.size(), line.size() + 1));
      line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
      if (!line.empty()) lines.push_back(line);
    }
    return lines;
  }

  /// The first line has lost its own indentation already.
  static std::size_t marginOf(const std::vector<std::string_view>& lines) {
    std::size_t margin = std::string_view::npos;
    for (std::size_t i = 1; i < lines.size(); ++i)
      margin = std::min(margin, lines[i].find_first_not_of(" \t"));
    return margin;
  }

  [[nodiscard]] std::string edgeText(const LineageTreeLine& line) const {
    if (!line.edge) return "";
    const RelationKindRow& row = rowOf(line.edge->kind);
    std::string text(upstream_ ? row.upstream : row.downstream);
    if (const std::string more = graph_.edgeText(*line.edge); !more.empty())
      text.append(" (").append(printable(more)).append(")");
    if (line.edge->replaces) text += " (by the cube's name for the dimension)";
    return text.empty() ? text : text + " ";
  }

  [[nodiscard]] std::string describe(NodeId id) const {
    std::string text(nodeKindLabel(graph_.node(id).kind));
    if (const std::string_view how = graph_.aggregation(id); !how.empty()) text.append(", ").append(how);
    const NodeId cube = graph_.cubeOf(id);
    if (cube != kNoNode && cube != id) text += ", cube " + printable(graph_.name(cube));
    if (const DatabaseAddress* database = graph_.database(id))
      text += ", " + printable(database->server + "/" + database->database);
    return text;
  }

  static std::string_view stateText(LineageTreeLine::State state) {
    switch (state) {
      case LineageTreeLine::State::above:
        return "  (see above)";
      case LineageTreeLine::State::below:
        return "  (see below)";
      case LineageTreeLine::State::cut:
        return "  ...";
      default:
        return "";
    }
  }

  /// The cubes that show something of the tree, with their perspectives: the question is often whether a
  /// change will be seen at all.
  void writeCubes() const {
    if (upstream_) return;
    std::vector<NodeId> cubes;
    for (const LineageTreeLine& line : lines_)
      if (const NodeId cube = graph_.cubeOf(line.node); cube != kNoNode) cubes.push_back(cube);
    std::sort(cubes.begin(), cubes.end());
    cubes.erase(std::unique(cubes.begin(), cubes.end()), cubes.end());
    if (!cubes.empty()) out_ << "\nCubes that this reaches:\n";
    for (const NodeId cube : cubes) {
      out_ << kIndent << printable(graph_.name(cube));
      writePerspectives(cube);
      out_ << "\n";
    }
  }

  void writePerspectives(NodeId cube) const {
    std::string_view separator = "  perspectives: ";
    for (const NodeId part : graph_.partsOf(cube)) {
      if (graph_.node(part).kind != NodeKind::perspective || !shows(part)) continue;
      out_ << separator << printable(graph_.name(part));
      separator = ", ";
    }
  }

  /// Whether a perspective shows something of the tree.
  [[nodiscard]] bool shows(NodeId perspective) const {
    const auto into = graph_.into(perspective);
    return std::any_of(into.begin(), into.end(), [&](const LineageEdge& edge) {
      return edge.kind == EdgeKind::member && (inTree_[edge.from] || edge.from == graph_.cubeOf(perspective));
    });
  }

  const LineageGraph& graph_;
  bool upstream_;
  std::vector<LineageTreeLine> lines_;
  std::vector<bool> hasMore_;  // by line
  std::vector<bool> inTree_;   // by node
  std::vector<bool> bars_;     // by depth: whether a line of that depth follows
  std::ostream& out_;
};

}  // namespace

void writeLineageText(const LineageGraph& graph, const LineageQuestion& question, std::ostream& out) {
  TreeText(graph, question, out).write();
  writeNotes(graph, out);
}

}  // namespace tav

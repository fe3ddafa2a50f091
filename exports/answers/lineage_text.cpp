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
constexpr std::size_t kIndent = 4;
/// What lies deeper is not indented further, or a long chain would be a triangle of blanks; on a terminal it
/// would have no room for its text.
constexpr std::size_t kDeepest = 60;
constexpr std::size_t kRoomForText = 30;

std::size_t deepestOf(const TextStyle& style) {
  if (style.width == 0) return kDeepest;
  return std::clamp<std::size_t>((std::max(style.width, kRoomForText) - kRoomForText) / kGap.size(), 3,
                                 kDeepest);
}

class TreeText {
 public:
  TreeText(const JoinedGraph& graph, const LineageQuestion& question, std::ostream& out,
           const TextStyle& style)
      : graph_(graph),
        direction_(question.walk.direction),
        lines_(lineageTree(graph, question.starts, shortened(question.walk))),
        hasMore_(lines_.size()),
        inTree_(graph.size()),
        deepest_(deepestOf(style)),
        out_(out),
        text_(out, style) {
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
    bars_.resize(std::min<std::size_t>(line.depth > 0 ? line.depth - 1 : 0, deepest_));
    std::string first = gutter();
    if (line.depth > 0) {
      first.append(hasMore_[i] ? kBranch : kLastBranch);
      bars_.push_back(hasMore_[i]);
    }
    const bool hasChildren = i + 1 < lines_.size() && lines_[i + 1].depth > line.depth;
    const std::string below = gutter().append(hasChildren ? kBar : kGap);
    const auto [model, node] = graph_.placeOf(line.node);
    const WalkGraph& graph = graph_.graph(model);
    const std::string edge = edgeText(line);
    text_.begin(first, below).add(edge, Look::relation).add(edge.empty() ? "" : " ");
    text_.add(printable(graph.qualifiedName(node)), Look::name).add("  ");
    text_.add(nodeKindLabel(graph.node(node).kind), Look::kind).add(describe(graph, node));
    text_.add(modelText(", model ", line.node)).add(stateText(line.state)).end();
    if (line.state == LineageTreeLine::State::whole) {
      writeExpression(graph.expression(node), below);
      writeOpenNames(graph, node, below);
    }
  }

  [[nodiscard]] std::string gutter() const {
    std::string text;
    for (const bool bar : bars_) text.append(bar ? kBar : kGap);
    return text;
  }

  /// The lines of an expression as they are written, without the indentation that all of them have.
  void writeExpression(std::string_view text, const std::string& gutter) {
    const std::vector<std::string> lines = linesOf(text);
    const std::size_t margin = marginOf(lines);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const std::string_view line = std::string_view(lines[i]).substr(i == 0 ? 0 : margin);
      const std::size_t indent = line.find_first_not_of(' ');
      // A line that does not fit goes on deeper than it began.
      text_.begin(gutter + (i == 0 ? "= " : "  ") + std::string(indent, ' '),
                  gutter + std::string(indent + 4, ' '));
      text_.add(line.substr(indent), Look::code).end();
    }
  }

  void writeOpenNames(const WalkGraph& graph, NodeId id, const std::string& gutter) {
    for (const OpenNameText& name : graph.openNames(id)) {
      text_.begin(gutter + "? ", gutter + "  ").add(printable(name.name), Look::name);
      text_.add(": ").add(printable(openNameWords(name)), Look::changed).end();
    }
  }

  /// The lines that hold something, as they are shown; the first without its indentation.
  static std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    text.remove_prefix(std::min(begin, text.size()));
    while (!text.empty()) {
      std::string_view line = text.substr(0, text.find('\n'));
      text.remove_prefix(std::min(text.size(), line.size() + 1));
      line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
      if (!line.empty()) lines.push_back(shownCode(line));
    }
    return lines;
  }

  /// The indentation that all lines but the first have.
  static std::size_t marginOf(const std::vector<std::string>& lines) {
    std::size_t margin = std::string::npos;
    for (std::size_t i = 1; i < lines.size(); ++i) margin = std::min(margin, lines[i].find_first_not_of(' '));
    return margin;
  }

  [[nodiscard]] std::string edgeText(const LineageTreeLine& line) const {
    if (!line.edge) return "";
    return printable(edgeWords(graph_.graph(line.model), *line.edge, direction_));
  }

  /// Nothing for what belongs to no model, or to the only one.
  [[nodiscard]] std::string modelText(std::string_view before, JoinedId id) const {
    const std::string_view name = graph_.modelName(id);
    return name.empty() ? std::string() : std::string(before) + printable(name);
  }

  /// What is told behind the kind.
  static std::string describe(const WalkGraph& graph, NodeId id) {
    std::string text;
    if (const std::string_view how = graph.aggregation(id); !how.empty()) text.append(", ").append(how);
    const NodeId cube = graph.cubeOf(id);
    if (cube != kNoNode && cube != id) text += ", cube " + printable(graph.name(cube));
    if (const DatabaseAddress* database = graph.database(id))
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
  void writeCubes() {
    if (direction_ == LineageDirection::upstream) return;
    std::vector<JoinedId> cubes;
    for (const LineageTreeLine& line : lines_) {
      const auto [model, node] = graph_.placeOf(line.node);
      if (const NodeId cube = graph_.graph(model).cubeOf(node); cube != kNoNode)
        cubes.push_back(graph_.idOf(model, cube));
    }
    std::sort(cubes.begin(), cubes.end());
    cubes.erase(std::unique(cubes.begin(), cubes.end()), cubes.end());
    if (cubes.empty()) return;
    out_ << "\n";
    text_.begin().add("Cubes that this reaches:", Look::title).end();
    for (const JoinedId cube : cubes) {
      const auto [model, node] = graph_.placeOf(cube);
      text_.begin(kIndent, 2 * kIndent).add(printable(graph_.graph(model).name(node)), Look::name);
      text_.add(modelText("  model ", cube));
      addPerspectives(model, node);
      text_.end();
    }
  }

  void addPerspectives(std::uint32_t model, NodeId cube) {
    const WalkGraph& graph = graph_.graph(model);
    std::string_view separator = "  perspectives: ";
    for (const NodeId part : graph.partsOf(cube)) {
      if (graph.node(part).kind != NodeKind::perspective || !shows(model, part)) continue;
      text_.add(separator).add(printable(graph.name(part)));
      separator = ", ";
    }
  }

  /// Whether a perspective shows something of the tree.
  [[nodiscard]] bool shows(std::uint32_t model, NodeId perspective) const {
    const WalkGraph& graph = graph_.graph(model);
    const auto into = graph.into(perspective);
    return std::any_of(into.begin(), into.end(), [&](const LineageEdge& edge) {
      return edge.kind == EdgeKind::member &&
             (inTree_[graph_.idOf(model, edge.from)] || edge.from == graph.cubeOf(perspective));
    });
  }

  const JoinedGraph& graph_;
  LineageDirection direction_;
  std::vector<LineageTreeLine> lines_;
  std::vector<bool> hasMore_;  // by line
  std::vector<bool> inTree_;   // by node
  std::vector<bool> bars_;     // by depth: whether a line of that depth follows
  std::size_t deepest_;
  std::ostream& out_;
  ShownText text_;
};

}  // namespace

std::string edgeWords(const WalkGraph& graph, const LineageEdge& edge, LineageDirection direction) {
  const RelationKindRow& row = rowOf(edge.kind);
  std::string text(direction == LineageDirection::upstream ? row.upstream : row.downstream);
  const auto add = [&](std::string_view more) {
    if (!more.empty()) text.append(text.empty() ? "" : " ").append("(").append(more).append(")");
  };
  add(graph.edgeText(edge));
  if (edge.replaces) add("by the cube's name for the dimension");
  return text;
}

void writeLineageText(const JoinedGraph& graph, const LineageQuestion& question, std::ostream& out,
                      const TextStyle& style) {
  TreeText(graph, question, out, style).write();
  writeNotes(graph, out, style);
}

}  // namespace tav

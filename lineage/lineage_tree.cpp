#include "lineage/lineage_tree.h"

#include <unordered_map>
#include <unordered_set>

namespace tav {
namespace {

class Walk {
 public:
  Walk(const JoinedGraph& graph, std::span<const JoinedId> starts, const LineageWalk& walk)
      : graph_(graph),
        starts_(starts),
        upstream_(walk.direction == LineageDirection::upstream),
        limit_(walk.depth),
        values_(walk.values),
        members_(walk.members) {
    for (const JoinedId start : starts) addStart(start);
  }

  std::vector<LineageTreeLine> run() {
    measure();
    for (const JoinedId start : starts_) {
      open({start, 0});
      while (!frames_.empty()) {
        Frame& frame = frames_.back();
        const auto depth = static_cast<std::uint32_t>(frames_.size());
        Step step;
        if (!next(frame, step))
          frames_.pop_back();
        else
          open({step.node, depth, step.edge, step.model});
      }
    }
    return std::move(lines_);
  }

 private:
  struct Step {
    JoinedId node = JoinedGraph::kNone;
    const LineageEdge* edge = nullptr;
    std::uint32_t model = 0;
  };
  struct Frame {
    JoinedId node;
    std::span<const JoinedId> parts;
    JoinedId twin;
    JoinedGraph::Place place;  // of the twin
    std::size_t edge = 0;
    std::size_t part = 0;
  };

  void addStart(JoinedId start) {
    std::vector<JoinedId>& parts = startParts_[start];
    std::unordered_set<JoinedId> known;
    for (JoinedId twin = start; twin != JoinedGraph::kNone; twin = graph_.nextTwin(twin)) {
      const auto [model, node] = graph_.placeOf(twin);
      const LineageGraph& graph = graph_.graph(model);
      const NodeKind kind = graph.node(node).kind;
      originals_.insert(graph_.idOf(model, graph.originalOf(node)));
      members_ |= kind == NodeKind::cube || kind == NodeKind::perspective;
      if (kind == NodeKind::cube) continue;  // its edges lead to all that it shows
      for (const NodeId part : graph.partsOf(node))
        if (const JoinedId id = graph_.idOf(model, part); known.insert(id).second) parts.push_back(id);
    }
  }

  [[nodiscard]] Frame frameOf(JoinedId node) const {
    const auto start = startParts_.find(node);
    return {node, start == startParts_.end() ? std::span<const JoinedId>() : std::span(start->second), node,
            graph_.placeOf(node)};
  }

  /// The next step from a node; false behind the last.
  bool next(Frame& frame, Step& step) const {
    if (frame.part < frame.parts.size()) {
      step = {frame.parts[frame.part++]};
      return true;
    }
    while (frame.twin != JoinedGraph::kNone) {
      if (nextEdge(frame, step)) return true;
      frame.twin = graph_.nextTwin(frame.twin);
      frame.edge = 0;
      if (frame.twin != JoinedGraph::kNone) frame.place = graph_.placeOf(frame.twin);
    }
    return false;
  }

  bool nextEdge(Frame& frame, Step& step) const {
    const auto [model, node] = frame.place;
    const LineageGraph& graph = graph_.graph(model);
    const std::size_t count = upstream_ ? graph.into(node).size() : graph.outOf(node).size();
    while (frame.edge < count) {
      const LineageEdge& edge =
          upstream_ ? graph.into(node)[frame.edge] : graph.edges()[graph.outOf(node)[frame.edge]];
      ++frame.edge;
      if (!isFollowed(model, edge)) continue;
      step = {graph_.idOf(model, upstream_ ? edge.from : edge.to), &edge, model};
      return true;
    }
    return false;
  }

  /// What holds calculated measures or the values of a KPI is fed by all that any of them names: between such
  /// wholes the tree would tell of ways that no value takes.
  [[nodiscard]] bool isFollowed(std::uint32_t model, const LineageEdge& edge) const {
    if (values_ && !givesValue(edge.kind)) return false;
    if (edge.kind == EdgeKind::member) return members_ || showsStart(model, edge);
    const NodeKind to = graph_.graph(model).node(edge.to).kind;
    if (!isClassifierKind(to)) return true;
    return edge.from != edge.to && to != NodeKind::calculations && to != NodeKind::kpi;
  }

  /// Whether a perspective shows the start or a copy of it. What it shows of all that depends on the start is
  /// told once, below the tree.
  [[nodiscard]] bool showsStart(std::uint32_t model, const LineageEdge& edge) const {
    const LineageGraph& graph = graph_.graph(model);
    return graph.node(edge.to).kind == NodeKind::perspective &&
           originals_.contains(graph_.idOf(model, graph.originalOf(edge.from)));
  }

  /// How near each node is to a start.
  void measure() {
    nearest_.assign(graph_.size(), kUnlimitedDepth);
    std::vector<JoinedId> queue(starts_.begin(), starts_.end());
    for (const JoinedId start : starts_) nearest_[start] = 0;
    for (std::size_t i = 0; i < queue.size(); ++i) {
      Frame frame = frameOf(queue[i]);
      Step step;
      while (next(frame, step)) {
        if (nearest_[step.node] != kUnlimitedDepth) continue;
        nearest_[step.node] = nearest_[queue[i]] + 1;
        queue.push_back(step.node);
      }
    }
  }

  void open(LineageTreeLine line) {
    using State = LineageTreeLine::State;
    if (nearest_[line.node] == kOpened) {
      line.state = State::above;
    } else if (nearest_[line.node] < line.depth) {
      line.state = State::below;
    } else if (line.depth == limit_ && leadsFurther(line.node)) {
      line.state = State::cut;
      nearest_[line.node] = kOpened;
    } else {
      nearest_[line.node] = kOpened;
      frames_.push_back(frameOf(line.node));
    }
    lines_.push_back(line);
  }

  [[nodiscard]] bool leadsFurther(JoinedId node) const {
    Frame frame = frameOf(node);
    Step step;
    return next(frame, step);
  }

  static constexpr std::uint32_t kOpened = kUnlimitedDepth - 1;

  const JoinedGraph& graph_;
  std::span<const JoinedId> starts_;
  bool upstream_;
  std::uint32_t limit_;
  bool values_;
  bool members_;
  std::unordered_map<JoinedId, std::vector<JoinedId>> startParts_;
  std::unordered_set<JoinedId> originals_;  // of the starts
  std::vector<std::uint32_t> nearest_;      // by node; kOpened once it stands in the tree
  std::vector<Frame> frames_;
  std::vector<LineageTreeLine> lines_;
};

}  // namespace

std::vector<LineageTreeLine> lineageTree(const JoinedGraph& graph, JoinedId start, const LineageWalk& walk) {
  return lineageTree(graph, std::span(&start, 1), walk);
}

std::vector<LineageTreeLine> lineageTree(const JoinedGraph& graph, std::span<const JoinedId> starts,
                                         const LineageWalk& walk) {
  return Walk(graph, starts, walk).run();
}

}  // namespace tav

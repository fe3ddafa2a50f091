#include "lineage/lineage_tree.h"

namespace tav {
namespace {

class Walk {
 public:
  Walk(const LineageGraph& graph, NodeId start, const LineageWalk& walk)
      : graph_(graph),
        start_(start),
        original_(graph.originalOf(start)),
        upstream_(walk.direction == LineageDirection::upstream),
        limit_(walk.depth),
        values_(walk.values),
        members_(walk.members || graph.node(start).kind == NodeKind::cube ||
                 graph.node(start).kind == NodeKind::perspective) {
    if (graph.node(start).kind != NodeKind::cube) startParts_ = graph.partsOf(start);
  }

  std::vector<LineageTreeLine> run() {
    measure();
    open({start_, 0, nullptr});
    while (!frames_.empty()) {
      Frame& frame = frames_.back();
      const auto depth = static_cast<std::uint32_t>(frames_.size());
      Step step;
      if (!next(frame, step))
        frames_.pop_back();
      else
        open({step.node, depth, step.edge});
    }
    return std::move(lines_);
  }

 private:
  struct Step {
    NodeId node = kNoNode;
    const LineageEdge* edge = nullptr;
  };
  struct Frame {
    NodeId node;
    std::size_t edge = 0;
    std::size_t part = 0;
  };

  /// The next step from a node; false behind the last.
  bool next(Frame& frame, Step& step) const {
    if (frame.node == start_ && frame.part < startParts_.size()) {
      step = {startParts_[frame.part++], nullptr};
      return true;
    }
    const std::size_t count = upstream_ ? graph_.into(frame.node).size() : graph_.outOf(frame.node).size();
    while (frame.edge < count) {
      const LineageEdge& edge = upstream_ ? graph_.into(frame.node)[frame.edge]
                                          : graph_.edges()[graph_.outOf(frame.node)[frame.edge]];
      ++frame.edge;
      if (!isFollowed(edge)) continue;
      step = {upstream_ ? edge.from : edge.to, &edge};
      return true;
    }
    return false;
  }

  /// What holds calculated measures or the values of a KPI is fed by all that any of them names: between such
  /// wholes the tree would tell of ways that no value takes.
  [[nodiscard]] bool isFollowed(const LineageEdge& edge) const {
    if (values_ && !givesValue(edge.kind)) return false;
    if (edge.kind == EdgeKind::member) return members_ || showsStart(edge);
    const NodeKind to = graph_.node(edge.to).kind;
    if (!isClassifierKind(to)) return true;
    return edge.from != edge.to && to != NodeKind::calculations && to != NodeKind::kpi;
  }

  /// Whether a perspective shows the start or a copy of it. What it shows of all that depends on the start is
  /// told once, below the tree.
  [[nodiscard]] bool showsStart(const LineageEdge& edge) const {
    return graph_.node(edge.to).kind == NodeKind::perspective && graph_.originalOf(edge.from) == original_;
  }

  /// How near each node is to the start.
  void measure() {
    nearest_.assign(graph_.nodes().size(), kUnlimitedDepth);
    nearest_[start_] = 0;
    std::vector<NodeId> queue{start_};
    for (std::size_t i = 0; i < queue.size(); ++i) {
      Frame frame{queue[i]};
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
      frames_.push_back({line.node});
    }
    lines_.push_back(line);
  }

  [[nodiscard]] bool leadsFurther(NodeId node) const {
    Frame frame{node};
    Step step;
    return next(frame, step);
  }

  static constexpr std::uint32_t kOpened = kUnlimitedDepth - 1;

  const LineageGraph& graph_;
  NodeId start_;
  NodeId original_;
  bool upstream_;
  std::uint32_t limit_;
  bool values_;
  bool members_;
  std::span<const NodeId> startParts_;  // of a cube none: its edges lead to all that it shows
  std::vector<std::uint32_t> nearest_;  // by node; kOpened once it stands in the tree
  std::vector<Frame> frames_;
  std::vector<LineageTreeLine> lines_;
};

}  // namespace

std::vector<LineageTreeLine> lineageTree(const LineageGraph& graph, NodeId start, const LineageWalk& walk) {
  return Walk(graph, start, walk).run();
}

}  // namespace tav

#include "lineage/lineage_tree.h"

#include <unordered_map>
#include <unordered_set>

namespace tav {
namespace {

class Walk {
 public:
  Walk(const JoinedGraph& graph, std::span<const JoinedId> starts, const LineageWalk& walk)
      : graph_(graph), starts_(starts), walk_(walk), upstream_(walk.direction == LineageDirection::upstream) {
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
      const WalkGraph& graph = graph_.graph(model);
      const NodeKind kind = graph.node(node).kind;
      originals_.insert(graph_.idOf(model, graph.originalOf(node)));
      walk_.members |= startsWithMembers(kind);
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
    const WalkGraph& graph = graph_.graph(model);
    const std::size_t count = upstream_ ? graph.into(node).size() : graph.outOf(node).size();
    while (frame.edge < count) {
      const LineageEdge& edge =
          upstream_ ? graph.into(node)[frame.edge] : graph.edges()[graph.outOf(node)[frame.edge]];
      ++frame.edge;
      if (!isFollowed(model, edge)) continue;
      if (upstream_ && isLastStep(graph, edge) && !startParts_.contains(frame.node)) continue;
      step = {graph_.idOf(model, upstream_ ? edge.from : edge.to), &edge, model};
      return true;
    }
    return false;
  }

  [[nodiscard]] bool isFollowed(std::uint32_t model, const LineageEdge& edge) const {
    const NodeKind to = graph_.graph(model).node(edge.to).kind;
    const Follow follow = followOf(edge.kind, edge.from == edge.to, to, walk_);
    return follow == Follow::ifShown ? showsStart(model, edge) : follow == Follow::yes;
  }

  /// Whether a perspective shows the start or a copy of it. What it shows of all that depends on the start is
  /// told once, below the tree.
  [[nodiscard]] bool showsStart(std::uint32_t model, const LineageEdge& edge) const {
    return originals_.contains(graph_.idOf(model, graph_.graph(model).originalOf(edge.from)));
  }

  /// Whether what an edge leads to is named only.
  [[nodiscard]] bool isEnd(const LineageEdge* edge, std::uint32_t model) const {
    if (edge && !upstream_ && isLastStep(graph_.graph(model), *edge)) return true;
    return walk_.shortens && upstream_ && edge && edge->kind == EdgeKind::loads &&
           graph_.graph(model).node(edge->to).kind != NodeKind::everyPartition;
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
        if (nearest_[step.node] != kUnlimitedDepth || isEnd(step.edge, step.model)) continue;
        nearest_[step.node] = nearest_[queue[i]] + 1;
        queue.push_back(step.node);
      }
    }
  }

  void open(LineageTreeLine line) {
    using State = LineageTreeLine::State;
    if (nearest_[line.node] == kOpened) {
      line.state = State::above;
    } else if (isEnd(line.edge, line.model)) {
      if (nearest_[line.node] != kUnlimitedDepth)
        line.state = State::below;
      else if (upstream_ && leadsFurther(line.node))
        line.state = State::cut;
      else
        nearest_[line.node] = kOpened;
    } else if (nearest_[line.node] < line.depth) {
      line.state = State::below;
    } else if (line.depth == walk_.depth && leadsFurther(line.node)) {
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
  LineageWalk walk_;
  bool upstream_;
  std::unordered_map<JoinedId, std::vector<JoinedId>> startParts_;
  std::unordered_set<JoinedId> originals_;  // of the starts
  std::vector<std::uint32_t> nearest_;      // by node; kOpened once it stands in the tree
  std::vector<Frame> frames_;
  std::vector<LineageTreeLine> lines_;
};

}  // namespace

Follow followOf(EdgeKind edge, bool isLoop, NodeKind to, const LineageWalk& walk) noexcept {
  if (walk.values && !givesValue(edge)) return Follow::no;
  if (edge == EdgeKind::member && !walk.members)
    return to == NodeKind::perspective ? Follow::ifShown : Follow::no;
  if (edge == EdgeKind::member || !isClassifierKind(to)) return Follow::yes;
  return isLoop || to == NodeKind::calculations || to == NodeKind::kpi ? Follow::no : Follow::yes;
}

bool isLastStep(const WalkGraph& graph, const LineageEdge& edge) noexcept {
  return edge.kind == EdgeKind::associated && graph.node(edge.from).kind == NodeKind::aggregationDesign;
}

bool startsWithMembers(NodeKind start) noexcept {
  return start == NodeKind::cube || start == NodeKind::perspective;
}

std::vector<LineageTreeLine> lineageTree(const JoinedGraph& graph, JoinedId start, const LineageWalk& walk) {
  return lineageTree(graph, std::span(&start, 1), walk);
}

std::vector<LineageTreeLine> lineageTree(const JoinedGraph& graph, std::span<const JoinedId> starts,
                                         const LineageWalk& walk) {
  return Walk(graph, starts, walk).run();
}

}  // namespace tav

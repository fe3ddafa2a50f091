#pragma once

// What trace and impact print: a tree for people, or the part of the graph for tools.

#include <ostream>
#include <string>
#include <vector>

#include "exports/answers/shown_text.h"
#include "lineage/lineage_tree.h"

namespace tav {

struct LineageQuestion {
  std::vector<JoinedId> starts;  ///< at least one
  LineageWalk walk;
};

/// What an edge does, seen from the node that a walk reaches along it: "aggregated by", "key of (2)". Empty
/// for one that hands a value on as it is. Passwords are masked; not safe for a terminal.
std::string edgeWords(const WalkGraph& graph, const LineageEdge& edge, LineageDirection direction);

/// A line for each place of the tree, expressions indented below what they compute, and at the end what shows
/// it: cubes and perspectives. Where models are named, each place says which one it is in. Safe for a
/// terminal; passwords are masked.
void writeLineageText(const JoinedGraph& graph, const LineageQuestion& question, std::ostream& out,
                      const TextStyle& style = {});

/// The part of the graph that the first start leads to, as a drawing (see exports/dot.h).
void writeLineageDot(const WalkGraph& graph, const LineageQuestion& question, std::ostream& out);

/// One JSON document: `{"format":"xmla-lineage/1","direction":...,"start":ID,"nodes":[...],"edges":[...]}`,
/// each node and edge of the walk once. Where models are named it is
/// `{"format":"xmla-lineage-models/1","direction":...,"models":[...],"starts":[ID,...],"nodes":[...],
/// "edges":[...]}`, and a node that is not shared has the member "model".
void writeLineageJson(const JoinedGraph& graph, const LineageQuestion& question, std::ostream& out);

/// The whole of the graph in the same words: `{"format":"xmla-graph/1","nodes":[...],"edges":[...]}`, or
/// `{"format":"xmla-graph-models/1","models":[...],...}`.
void writeGraphJson(const JoinedGraph& graph, std::ostream& out);

}  // namespace tav

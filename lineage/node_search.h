#pragma once

// Finding a node by what people call it.

#include <string_view>
#include <vector>

#include "lineage/lineage_graph.h"
#include "lineage/lineage_tree.h"

namespace tav {

/// The nodes that `name` means: those with this path, or else this qualified name, or else those whose
/// qualified name or path ends in these parts, or else whose name holds this text; letter case, of any
/// script, counts only where it decides. Where a name fits tables, attributes, measures or the like as well
/// as a hierarchy, role or partition, it means the former. Of a node and its plain copies (a measure as cubes
/// list it, a column as a view shows it) only one is meant: the measure itself, and of columns the one that
/// has more to tell in this direction. Several nodes are several meanings; none, that nothing is called so.
/// One pass over the nodes.
std::vector<NodeId> findNodes(const LineageGraph& graph, std::string_view name, LineageDirection direction);

/// The nodes whose names are nearest to `name` in spelling, at most `count`, the nearest first; those that
/// are nowhere near are left out.
std::vector<NodeId> nearestNodes(const LineageGraph& graph, std::string_view name, std::size_t count);

/// The one node that `name` means. Throws Message::ambiguousName, which lists the nodes that it may mean,
/// or Message::unknownName with the nearest ones.
NodeId findNode(const LineageGraph& graph, std::string_view name, LineageDirection direction);

}  // namespace tav

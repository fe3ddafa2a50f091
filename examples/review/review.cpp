// review OLD NEW NAME: what a reviewer asks of two saved models of one database: what there is, how far its
// lineage reaches, what is unused, what depends on the object NAME, and what differs.
#include <exception>
#include <iostream>
#include <map>

#include "framework/serialization/model_reader.h"
#include "lineage/coverage.h"
#include "lineage/lineage_tree.h"
#include "lineage/model_diff.h"
#include "lineage/node_search.h"
#include "lineage/unused.h"

namespace {

void printObjects(const tav::LineageGraph& graph) {
  std::map<std::string_view, std::size_t> counts;
  for (const tav::LineageNode& node : graph.nodes()) ++counts[tav::nodeKindLabel(node.kind)];
  for (const auto& [kind, count] : counts) std::cout << kind << ": " << count << '\n';
}

void printCoverage(const tav::LineageGraph& graph) {
  const tav::Coverage coverage = tav::measureCoverage(graph);
  std::cout << coverage.percent() << " % trace back to a database column\n";
  for (const tav::CubeCoverage& cube : coverage.cubes)
    for (const tav::CoverageGap& gap : cube.gaps)
      std::cout << "  not " << graph.qualifiedName(gap.node) << ": " << gap.reason << '\n';
}

void printUnused(const tav::LineageGraph& graph) {
  for (const tav::UnusedGroup& group : tav::unusedGroups()) {
    for (const tav::UnusedNode& unused : tav::findUnused(graph, group))
      std::cout << "unused " << tav::nodeKindLabel(graph.node(unused.node).kind) << ' '
                << graph.qualifiedName(unused.node) << '\n';
  }
}

void printDependents(const tav::LineageGraph& graph, const char* name) {
  const tav::LineageWalk walk{.direction = tav::LineageDirection::downstream};
  const tav::NodeId start = tav::findNode(graph, name, walk.direction);
  for (const tav::LineageTreeLine& line : tav::lineageTree(graph, start, walk))
    if (line.depth > 0 && line.state == tav::LineageTreeLine::State::whole)
      std::cout << graph.qualifiedName(start) << " <- " << graph.path(line.node) << '\n';
}

void printDifferences(const tav::ModelDiff& diff) {
  for (const tav::BrokenName& broken : diff.broken)
    std::cout << "broken: " << broken.object.name << " names " << broken.name << '\n';
  for (const tav::DiffObject& object : diff.lostLineage) std::cout << "lost lineage: " << object.name << '\n';
  for (const tav::DiffObject& object : diff.added) std::cout << "added: " << object.name << '\n';
  for (const tav::DiffObject& object : diff.removed) std::cout << "removed: " << object.name << '\n';
  for (const tav::ChangedObjects& changed : diff.changed)
    for (const tav::DiffObject& object : changed.objects) std::cout << "changed: " << object.name << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: review OLD NEW NAME\n";
    return 2;
  }
  try {
    const tav::SavedModel before = tav::loadSavedModel(argv[1]);
    const tav::SavedModel after = tav::loadSavedModel(argv[2]);
    const tav::DetailedModel reviewed(*after.model, after.details.get());
    const tav::LineageGraph graph(reviewed);
    printObjects(graph);
    printCoverage(graph);
    printUnused(graph);
    printDependents(graph, argv[3]);
    printDifferences(tav::compareModels({*before.model, before.details.get()}, reviewed));
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}

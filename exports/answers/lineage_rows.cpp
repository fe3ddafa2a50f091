#include "exports/answers/lineage_rows.h"

#include <algorithm>
#include <string>
#include <tuple>

#include "exports/answers/markdown.h"
#include "exports/answers/notes.h"
#include "exports/csv_text.h"
#include "framework/std/printable.h"
#include "lineage/joined_search.h"
#include "lineage/unused.h"

namespace tav {
namespace {

/// How a node is related to the one before it on the way. Where the tree has no words, the table needs some.
std::string relationText(const JoinedGraph& graph, const LineageQuestion& question, const LineageRow& row) {
  if (!row.edge) return "part";
  const std::string words = edgeWords(graph.graph(row.edgeModel), *row.edge, question.walk.direction);
  return words.empty() ? std::string(edgeKindName(row.edge->kind)) : words;
}

NodeKind kindOf(const JoinedGraph& graph, JoinedId id) {
  const auto [model, node] = graph.placeOf(id);
  return graph.graph(model).node(node).kind;
}

}  // namespace

std::vector<LineageRow> lineageRows(const JoinedGraph& graph, const LineageQuestion& question,
                                    std::span<const NodeKind> kinds) {
  const auto isWanted = [&](JoinedId id) {
    return kinds.empty() || std::find(kinds.begin(), kinds.end(), kindOf(graph, id)) != kinds.end();
  };
  std::vector<LineageRow> rows;
  for (const LineageTreeLine& line : lineageTree(graph, question.starts, question.walk)) {
    using State = LineageTreeLine::State;
    if (line.depth == 0 || line.state == State::above || line.state == State::below) continue;
    if (!isWanted(line.node)) continue;
    const auto [model, node] = graph.placeOf(line.node);
    rows.push_back({line.node, line.depth, line.edge, line.model, graph.graph(model).path(node)});
  }
  const auto placeOf = [&](const LineageRow& row) {
    return std::tuple(kindOf(graph, row.node), graph.modelName(row.node), std::string_view(row.path),
                      row.node);
  };
  std::sort(rows.begin(), rows.end(),
            [&](const LineageRow& a, const LineageRow& b) { return placeOf(a) < placeOf(b); });
  return rows;
}

void writeLineageList(const JoinedGraph& graph, const LineageQuestion& question,
                      std::span<const NodeKind> kinds, std::ostream& out) {
  const JoinedNames names(graph);
  for (const LineageRow& row : lineageRows(graph, question, kinds))
    out << printable(names.nameOf(row.node)) << "\n";
}

void writeLineageCsv(const JoinedGraph& graph, const LineageQuestion& question,
                     std::span<const NodeKind> kinds, std::ostream& out) {
  std::string text;
  CsvText csv(text);
  if (graph.namesModels()) csv.cell("model");
  for (const std::string_view title : {"kind", "qualified_name", "path", "depth", "relation", "hidden"})
    csv.cell(title);
  csv.endRow();
  for (const LineageRow& row : lineageRows(graph, question, kinds)) {
    const auto [model, node] = graph.placeOf(row.node);
    const WalkGraph& one = graph.graph(model);
    if (graph.namesModels()) csv.cell(graph.modelName(row.node));
    csv.cell(nodeKindName(one.node(node).kind));
    csv.cell(one.qualifiedName(node));
    csv.cell(row.path);
    csv.cell(std::to_string(row.depth));
    csv.cell(relationText(graph, question, row));
    csv.cell(one.isHidden(node) ? "1" : "0");
    csv.endRow();
  }
  out << text;
}

void writeLineageMarkdown(const JoinedGraph& graph, const LineageQuestion& question,
                          std::span<const NodeKind> kinds, std::ostream& out) {
  const bool named = graph.namesModels();
  out << (named ? "| Model " : "") << "| Kind | Name | Path | Depth | Relation | Hidden |\n"
      << (named ? "|---" : "") << "|---|---|---|--:|---|---|\n";
  for (const LineageRow& row : lineageRows(graph, question, kinds)) {
    const auto [model, node] = graph.placeOf(row.node);
    const WalkGraph& one = graph.graph(model);
    if (named) {
      const std::string_view name = graph.modelName(row.node);
      out << "| " << (name.empty() ? std::string() : markdownCell(name)) << " ";
    }
    out << "| " << nodeKindLabel(one.node(node).kind) << " | " << markdownCell(one.qualifiedName(node))
        << " | " << markdownCell(row.path) << " | " << row.depth << " | "
        << markdownCell(relationText(graph, question, row)) << " | " << (one.isHidden(node) ? "hidden" : "")
        << " |\n";
  }
  writeNotes(graph, out);
}

}  // namespace tav

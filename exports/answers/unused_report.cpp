#include "exports/answers/unused_report.h"

#include "exports/answers/markdown.h"
#include "exports/answers/notes.h"
#include "exports/csv_text.h"
#include "framework/std/json_writer.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

constexpr std::string_view kNothing = "Nothing is unused.\n";

std::string capital(std::string_view word) {
  std::string text(word);
  text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return text;
}

std::string_view stateOf(const UnusedNode& node) {
  return node.isShown() ? "shown" : "unused";
}

/// What shows a node or is related to it, each once: "shown by cube Shop, perspective Till".
std::string showsText(const LineageGraph& graph, const UnusedNode& node) {
  std::string text;
  std::string_view words;
  for (const LineageEdge& edge : node.shows) {
    const std::string_view next = rowOf(edge.kind).downstream;
    text.append(text.empty() ? "" : words == next ? ", " : "; ");
    if (words != next) text.append(next).append(" ");
    words = next;
    text.append(nodeKindLabel(graph.node(edge.to).kind)).append(" ").append(graph.name(edge.to));
  }
  return text;
}

/// What is told behind the name: that it is hidden, how many parts it has, what shows it.
std::string remarksOf(const LineageGraph& graph, const UnusedNode& node) {
  std::string text;
  const auto add = [&](const std::string& remark) { text.append(text.empty() ? "" : ", ").append(remark); };
  if (node.hidden) add("hidden");
  if (node.parts > 0) add(std::to_string(node.parts) + (node.parts == 1 ? " part" : " parts"));
  if (!node.shows.empty()) add(showsText(graph, node));
  return text;
}

/// The groups one after the other, of each first what nothing uses, then what is only shown.
template <class Section, class Item>
void forEachSection(const LineageGraph& graph, std::span<const UnusedGroup> groups, Section section,
                    Item item) {
  for (const UnusedGroup& group : groups) {
    const std::vector<UnusedNode> nodes = findUnused(graph, group);
    for (const bool shown : {false, true}) {
      bool isOpen = false;
      for (const UnusedNode& node : nodes) {
        if (node.isShown() != shown) continue;
        if (!isOpen) section(capital(group.name) + (shown ? " that are only shown" : " that nothing uses"));
        isOpen = true;
        item(node);
      }
    }
  }
}

void writeNode(JsonWriter& json, const LineageGraph& graph, const UnusedNode& node) {
  json.line();
  json.open('{');
  json.member("kind", nodeKindName(graph.node(node.node).kind));
  json.member("name", graph.name(node.node));
  json.member("qualifiedName", graph.qualifiedName(node.node));
  json.member("path", graph.path(node.node));
  json.member("state", stateOf(node));
  if (node.hidden) json.member("hidden", true);
  if (node.parts > 0) json.member("parts", node.parts);
  if (!node.shows.empty()) {
    json.open("shownBy", '[');
    for (const LineageEdge& edge : node.shows) {
      json.open('{');
      json.member("relation", edgeKindName(edge.kind));
      json.member("kind", nodeKindName(graph.node(edge.to).kind));
      json.member("name", graph.name(edge.to));
      json.member("path", graph.path(edge.to));
      json.close('}');
    }
    json.close(']');
  }
  json.close('}');
}

}  // namespace

void writeUnusedText(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out) {
  bool isFirst = true;
  const auto section = [&](const std::string& title) {
    out << (isFirst ? "" : "\n") << title << "\n";
    isFirst = false;
  };
  forEachSection(graph, groups, section, [&](const UnusedNode& node) {
    const std::string remarks = remarksOf(graph, node);
    out << "    " << printable(graph.qualifiedName(node.node)) << (remarks.empty() ? "" : "  ")
        << printable(remarks) << "\n";
  });
  if (isFirst) out << kNothing;
  writeNotes(graph, out);
}

void writeUnusedMarkdown(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out) {
  bool isFirst = true;
  const auto section = [&](const std::string& title) {
    out << (isFirst ? "" : "\n") << "**" << title << "**\n\n";
    isFirst = false;
  };
  forEachSection(graph, groups, section, [&](const UnusedNode& node) {
    out << "- " << markdownCode(graph.qualifiedName(node.node));
    if (node.hidden) out << ", hidden";
    if (node.parts > 0) out << ", " << node.parts << (node.parts == 1 ? " part" : " parts");
    for (const LineageEdge& edge : node.shows)
      out << ", " << rowOf(edge.kind).downstream << " " << nodeKindLabel(graph.node(edge.to).kind) << " "
          << markdownCode(graph.name(edge.to));
    out << "\n";
  });
  if (isFirst) out << kNothing;
  writeNotes(graph, out);
}

void writeUnusedJson(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out) {
  std::string text;
  JsonWriter json(text);
  json.begin('{');
  json.member("format", "xmla-unused/1");
  json.open("groups", '[');
  for (const UnusedGroup& group : groups) {
    json.line();
    json.open('{');
    json.member("name", group.name);
    json.open("nodes", '[');
    for (const UnusedNode& node : findUnused(graph, group)) writeNode(json, graph, node);
    json.close(']');
    json.close('}');
  }
  json.close(']');
  writeNotesJson(json, graph);
  json.close('}');
  out << text << "\n";
}

void writeUnusedCsv(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out) {
  std::string text;
  CsvText csv(text);
  for (const std::string_view title :
       {"kind", "name", "qualified_name", "path", "state", "hidden", "parts", "shown_by"})
    csv.cell(title);
  csv.endRow();
  for (const UnusedGroup& group : groups) {
    for (const UnusedNode& node : findUnused(graph, group)) {
      csv.cell(nodeKindName(graph.node(node.node).kind));
      csv.cell(graph.name(node.node));
      csv.cell(graph.qualifiedName(node.node));
      csv.cell(graph.path(node.node));
      csv.cell(stateOf(node));
      csv.cell(node.hidden ? "1" : "0");
      csv.cell(node.parts == 0 ? std::string() : std::to_string(node.parts));
      csv.cell(showsText(graph, node));
      csv.endRow();
    }
  }
  out << text;
}

}  // namespace tav

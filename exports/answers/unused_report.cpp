#include "exports/answers/unused_report.h"

#include <functional>
#include <utility>

#include "exports/answers/markdown.h"
#include "exports/answers/notes.h"
#include "exports/csv_text.h"
#include "framework/std/json_writer.h"
#include "framework/std/printable.h"
#include "lineage/joined_use.h"

namespace tav {
namespace {

constexpr std::string_view kNothing = "Nothing is unused.\n";
constexpr std::size_t kIndent = 4;

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

/// One of the models of an answer.
struct ModelPart {
  std::string_view name;  ///< empty where models are not named
  const LineageGraph& graph;
  std::vector<bool> usedBeside;
};

template <class F> void forEachModel(const JoinedModels& graph, F tell) {
  const JoinedUse use(graph);
  for (std::uint32_t model = 0; model < graph.models().size(); ++model)
    tell(ModelPart{graph.models()[model].name, graph.whole(model), use.usedBeside(model)});
}

/// The groups one after the other, of each first what nothing uses, then what is only shown.
template <class Section, class Item>
void forEachSection(const ModelPart& part, std::span<const UnusedGroup> groups, Section section, Item item) {
  for (const UnusedGroup& group : groups) {
    const std::vector<UnusedNode> nodes = findUnused(part.graph, group, part.usedBeside);
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

void writeRow(CsvText& csv, const ModelPart& part, const UnusedNode& node) {
  const LineageGraph& graph = part.graph;
  if (!part.name.empty()) csv.cell(part.name);
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

/// The name of a model as a title, once before the first of its sections.
class Titles {
 public:
  /// Writes a title, of a model or of a section.
  using Write = std::function<void(const std::string& title)>;

  Titles(std::ostream& out, Write write) : out_(out), write_(std::move(write)) {}

  void section(const ModelPart& part, const std::string& model, const std::string& title) {
    out_ << (isFirst_ ? "" : "\n");
    if (!part.name.empty() && model_ != part.name) write_(model);
    model_ = part.name;
    isFirst_ = false;
    write_(title);
  }
  [[nodiscard]] bool isNothing() const { return isFirst_; }

 private:
  std::ostream& out_;
  Write write_;
  std::string_view model_;
  bool isFirst_ = true;
};

void writeGroups(JsonWriter& json, const ModelPart& part, std::span<const UnusedGroup> groups) {
  json.open("groups", '[');
  for (const UnusedGroup& group : groups) {
    json.line();
    json.open('{');
    json.member("name", group.name);
    json.open("nodes", '[');
    for (const UnusedNode& node : findUnused(part.graph, group, part.usedBeside))
      writeNode(json, part.graph, node);
    json.close(']');
    json.close('}');
  }
  json.close(']');
}

}  // namespace

void writeUnusedText(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out,
                     const TextStyle& style) {
  ShownText text(out, style);
  Titles titles(out, [&](const std::string& title) { text.begin(0, kIndent).add(title, Look::title).end(); });
  forEachModel(graph, [&](const ModelPart& part) {
    const auto section = [&](const std::string& title) {
      titles.section(part, "Model " + printable(part.name), title);
    };
    forEachSection(part, groups, section, [&](const UnusedNode& node) {
      const std::string remarks = remarksOf(part.graph, node);
      text.begin(kIndent, 2 * kIndent).add(printable(part.graph.qualifiedName(node.node)), Look::name);
      text.add(remarks.empty() ? "" : "  ").add(printable(remarks)).end();
    });
  });
  if (titles.isNothing()) out << kNothing;
  writeNotes(graph, out, style);
}

void writeUnusedMarkdown(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out) {
  Titles titles(out, [&](const std::string& title) { out << title << "\n\n"; });
  forEachModel(graph, [&](const ModelPart& part) {
    const auto section = [&](const std::string& title) {
      titles.section(part, "### Model " + markdownCode(part.name), "**" + title + "**");
    };
    forEachSection(part, groups, section, [&](const UnusedNode& node) {
      out << "- " << markdownCode(part.graph.qualifiedName(node.node));
      if (node.hidden) out << ", hidden";
      if (node.parts > 0) out << ", " << node.parts << (node.parts == 1 ? " part" : " parts");
      for (const LineageEdge& edge : node.shows)
        out << ", " << rowOf(edge.kind).downstream << " " << nodeKindLabel(part.graph.node(edge.to).kind)
            << " " << markdownCode(part.graph.name(edge.to));
      out << "\n";
    });
  });
  if (titles.isNothing()) out << kNothing;
  writeNotes(graph, out);
}

void writeUnusedJson(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out) {
  std::string text;
  JsonWriter json(text);
  json.begin('{');
  json.member("format", graph.namesModels() ? "xmla-unused-models/1" : "xmla-unused/1");
  if (graph.namesModels()) json.open("models", '[');
  forEachModel(graph, [&](const ModelPart& part) {
    if (!graph.namesModels()) return writeGroups(json, part, groups);
    json.line();
    json.open('{');
    json.member("model", part.name);
    writeGroups(json, part, groups);
    json.close('}');
  });
  if (graph.namesModels()) json.close(']');
  writeNotesJson(json, graph);
  json.close('}');
  out << text << "\n";
}

void writeUnusedCsv(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out) {
  std::string text;
  CsvText csv(text);
  if (graph.namesModels()) csv.cell("model");
  for (const std::string_view title :
       {"kind", "name", "qualified_name", "path", "state", "hidden", "parts", "shown_by"})
    csv.cell(title);
  csv.endRow();
  forEachModel(graph, [&](const ModelPart& part) {
    for (const UnusedGroup& group : groups)
      for (const UnusedNode& node : findUnused(part.graph, group, part.usedBeside)) writeRow(csv, part, node);
  });
  out << text;
}

}  // namespace tav

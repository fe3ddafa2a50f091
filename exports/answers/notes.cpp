#include "exports/answers/notes.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "framework/std/printable.h"

namespace tav {
namespace {

constexpr std::size_t kListedModels = 5;
constexpr std::size_t kNoteIndent = 6;  // of further rows, behind "Note: "

std::string modelListText(const std::vector<std::string_view>& models) {
  std::string text(models.size() == 1 ? "model " : "models ");
  for (std::size_t i = 0; i < std::min(models.size(), kListedModels); ++i)
    text.append(i == 0 ? "" : ", ").append(models[i]);
  if (models.size() > kListedModels)
    text.append(" and ").append(std::to_string(models.size() - kListedModels)).append(" more");
  return text;
}

}  // namespace

std::vector<std::string> answerNotes(const JoinedGraph& graph) {
  if (!graph.namesModels()) return graph.graph(0).notes();
  // Each note once, with the models that it is true of.
  std::vector<std::pair<std::string, std::vector<std::string_view>>> told;
  std::unordered_map<std::string, std::size_t> places;
  for (const JoinedGraph::Model& model : graph.models()) {
    for (std::string& note : model.graph->notes()) {
      const auto [place, isNew] = places.try_emplace(note, told.size());
      if (isNew) told.emplace_back(std::move(note), std::vector<std::string_view>());
      told[place->second].second.push_back(model.name);
    }
  }
  std::vector<std::string> notes;
  notes.reserve(told.size());
  for (const auto& [note, models] : told) notes.push_back(modelListText(models) + ": " + note);
  return notes;
}

void writeNotes(std::span<const std::string> notes, ShownText& text) {
  if (!notes.empty()) text.begin().end();
  for (const std::string& note : notes)
    text.begin(0, kNoteIndent).add("Note:", Look::changed).add(" ").add(printable(note)).add(".").end();
}

void writeNotes(const JoinedGraph& graph, std::ostream& out, const TextStyle& style) {
  ShownText text(out, style);
  writeNotes(answerNotes(graph), text);
}

void writeNotesJson(JsonWriter& json, const JoinedGraph& graph) {
  const std::vector<std::string> notes = answerNotes(graph);
  if (notes.empty()) return;
  json.open("notes", '[');
  for (const std::string& note : notes) json.value(note);
  json.close(']');
}

void writeOpenNameJson(JsonWriter& json, const OpenNameText& name) {
  json.member("name", name.name);
  json.member("state", openNameStateText(name.state));
  json.optional("note", name.note);
}

}  // namespace tav

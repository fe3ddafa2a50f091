#include "exports/answers/notes.h"

namespace tav {

std::vector<std::string> answerNotes(const LineageGraph& graph) {
  std::vector<std::string> notes;
  const Details* details = graph.details();
  if (!details) {
    notes.emplace_back(
        "the document has no details: keys, joins, roles, scripts and whatever else its model leaves out are "
        "not known");
    return notes;
  }
  for (std::size_t i = 0; i < kPassedOverCount; ++i) {
    const auto what = static_cast<PassedOver>(i);
    const std::size_t count = details->passedOver(what);
    if (count == 0 || !rowOf(what).hasMeaning) continue;
    notes.push_back("not looked at: " + std::string(rowOf(what).words) + " (" + std::to_string(count) + ")");
  }
  return notes;
}

void writeNotes(const LineageGraph& graph, std::ostream& out) {
  const std::vector<std::string> notes = answerNotes(graph);
  if (!notes.empty()) out << "\n";
  for (const std::string& note : notes) out << "Note: " << note << ".\n";
}

void writeNotesJson(JsonWriter& json, const LineageGraph& graph) {
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

#include "tests/support/estate_answers.h"

#include <functional>
#include <sstream>

#include "exports/answers/lineage_rows.h"
#include "framework/std/exception.h"

namespace tav::test {
namespace {

std::string told(const JoinedGraph& graph, const FoundStarts& found, const LineageWalk& walk) {
  std::ostringstream text;
  writeLineageText(graph, {found.nodes, walk}, text);
  writeLineageCsv(graph, {found.nodes, walk}, {}, text);
  writeLineageList(graph, {found.nodes, walk}, {}, text);
  for (const std::string& message : found.ambiguous) text << message << '\n';
  return text.str();
}

std::string messageOf(const std::function<std::string()>& answer) {
  try {
    return answer();
  } catch (const TAVException& error) {
    return error.getMessage().str();
  }
}

}  // namespace

EstateDocuments::EstateDocuments(const std::string& estate) : estate_(estate) {
  for (const EstateModel& model : modelsOf(estate)) {
    Loaded& loaded = loaded_.emplace_back();
    loaded.saved = loadSavedModelText(documentOf(estate, model.source, model.version.value()), model.source);
    loaded.graph.emplace(DetailedModel(*loaded.saved.model, loaded.saved.details.get()));
    const std::string name = model.name + std::to_string(loaded_.size());
    asked_.models.push_back(model);
    asked_.names.push_back(name);
    models_.push_back({name, &*loaded.graph});
  }
  joined_.emplace(models_);
}

std::string EstateDocuments::answer(const std::string& name, const LineageWalk& walk) const {
  return messageOf([&] { return told(*joined_, findStarts(*joined_, name, walk.direction), walk); });
}

std::string EstateDocuments::answerOfRows(const std::string& name, const LineageWalk& walk) const {
  return messageOf([&] {
    const auto answer = EstateLineage(estate_, asked_).ask(name, walk);
    return told(answer->graph(), answer->starts(), walk);
  });
}

}  // namespace tav::test

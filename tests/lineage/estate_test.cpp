// Answers from the rows of an estate are those that its models give.

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <sstream>

#include "exports/answers/lineage_rows.h"
#include "exports/estate_lineage.h"
#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "lineage/joined_search.h"
#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

struct Loaded {
  tav::SavedModel saved;
  std::optional<tav::LineageGraph> graph;
};

/// The models of an estate as their documents have them.
class Documents {
 public:
  explicit Documents(const std::string& estate) {
    for (const tav::EstateModel& model : tav::modelsOf(estate)) {
      Loaded& loaded = loaded_.emplace_back();
      loaded.saved =
          tav::loadSavedModelText(tav::documentOf(estate, model.source, *model.version), model.source);
      loaded.graph.emplace(tav::DetailedModel(*loaded.saved.model, loaded.saved.details.get()));
      const std::string name = model.name + std::to_string(loaded_.size());
      asked_.models.push_back(model);
      asked_.names.push_back(name);
      models_.push_back({name, &*loaded.graph});
    }
    joined_.emplace(models_);
  }

  [[nodiscard]] const tav::AskedModels& asked() const { return asked_; }
  [[nodiscard]] const tav::JoinedModels& joined() const { return *joined_; }

 private:
  std::deque<Loaded> loaded_;
  tav::AskedModels asked_;
  std::vector<tav::JoinedModels::Model> models_;
  std::optional<tav::JoinedModels> joined_;
};

std::string told(const tav::JoinedGraph& graph, const tav::FoundStarts& found, const tav::LineageWalk& walk) {
  std::ostringstream text;
  tav::writeLineageText(graph, {found.nodes, walk}, text);
  tav::writeLineageCsv(graph, {found.nodes, walk}, {}, text);
  tav::writeLineageList(graph, {found.nodes, walk}, {}, text);
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

void checkName(const std::string& estate, const Documents& documents, const std::string& name,
               const tav::LineageWalk& walk) {
  const std::string expected = messageOf(
      [&] { return told(documents.joined(), findStarts(documents.joined(), name, walk.direction), walk); });
  const std::string actual = messageOf([&] {
    const auto answer = tav::EstateLineage(estate, documents.asked()).ask(name, walk);
    return told(answer->graph(), answer->starts(), walk);
  });
  EXPECT_EQ(actual, expected) << name;
}

std::string makeEstate(const tav::test::TemporaryFolder& folder) {
  std::string estate = (folder.path() / "estate.db").string();
  std::string command("'" PROGRAM_FOLDER "/xmla-bridge' import --quiet --jobs 1 --estate '" + estate + "'");
  for (const char* name :
       {"murmeltal-huts.asdatabase", "ferry-line.bim", "estate/guest-letter.bim", "estate/hut-board.bim"})
    command.append(" '" EXAMPLES "/").append(name).append("'");
  for (const char* name : {"orders.xmla", "names.xmla", "counts.bim"})
    command.append(" '").append(tav::test::testFile(std::string("lineage/") + name).string()).append("'");
  // Another one of the same name, over the same tables.
  fs::copy(tav::test::testFile("lineage/orders.xmla"), folder.path() / "copy.xmla");
  command.append(" '").append((folder.path() / "copy.xmla").string()).append("' >/dev/null 2>&1");
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 0);
  return estate;
}

TEST(Estate, RowsAnswerAsTheirModelsDo) {
  constexpr tav::JoinedId kStep = 7;  // of the nodes, so many of which are asked for
  const tav::test::TemporaryFolder folder;
  const std::string estate = makeEstate(folder);
  const Documents documents(estate);
  const tav::JoinedNames names(documents.joined());
  for (const auto direction : {tav::LineageDirection::upstream, tav::LineageDirection::downstream}) {
    const tav::JoinedId first = direction == tav::LineageDirection::upstream ? 0 : kStep / 2;
    for (tav::JoinedId id = first; id < documents.joined().size(); id += kStep) {
      tav::LineageWalk walk{direction};
      walk.values = id % 3 == 0;
      if (id % 4 == 0) walk.depth = id % 5;
      checkName(estate, documents, names.nameOf(id), walk);
    }
    // Names of several, parts of names, paths, what is misspelt, what nothing is called, and no name.
    for (const char* name : {"Amount", "mount", "[Orders]", "orders", "/", "Amout", "x/y", "zzzzzzzzzz", ""})
      checkName(estate, documents, name, {direction});
  }
}

}  // namespace

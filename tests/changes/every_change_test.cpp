// Takes definitions, changes one thing at a time, and holds the answer of `diff` against that.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <set>
#include <span>
#include <sstream>

#include "lineage/model_diff.h"
#include "tests/changes/definition.h"
#include "tests/changes/json_changes.h"
#include "tests/changes/xml_changes.h"
#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;
using tav::test::Changes;
using tav::test::Definition;
using tav::test::Importer;

/// What the tried changes came to.
struct Tried {
  std::size_t changes = 0;
  std::size_t refused = 0;                     // changed texts that are no definition any more
  std::size_t without = 0;                     // changes of what carries no meaning
  std::set<std::string> kinds;                 // of places that were changed in a way
  std::map<std::string, std::string> unnamed;  // those of them that no answer named, with an example
};

/// Tries the changes of one definition.
class Trial {
 public:
  Trial(std::string name, const Importer& importer, const std::string& document, const Changes& changes,
        Tried& tried)
      : name_(std::move(name)),
        importer_(importer),
        changes_(changes),
        before_(importer.importOne(document)),
        tried_(tried) {}

  /// So many changes: of each kind that was not tried yet, then others that are spread over the document.
  void run(std::size_t most) {
    if (!before_.model) return;
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; i < changes_.size() && chosen.size() < most; ++i)
      if (tried_.kinds.insert(changes_.kind(i)).second) chosen.push_back(i);
    const std::size_t step = std::max<std::size_t>(changes_.size() / (most - chosen.size() + 1), 1);
    for (std::size_t i = step / 2; i < changes_.size() && chosen.size() < most; i += step)
      chosen.push_back(i);
    for (std::span<const std::size_t> rest(chosen); !rest.empty();) {
      const std::size_t count = std::min(rest.size(), importer_.most);
      tryAll(rest.first(count));
      rest = rest.subspan(count);
    }
  }

 private:
  void tryAll(std::span<const std::size_t> chosen) {
    std::vector<std::string> texts;
    for (const std::size_t i : chosen) texts.push_back(changes_.at(i));
    const std::vector<Definition> after = importer_.importAll(texts);
    tried_.changes += chosen.size();
    for (std::size_t i = 0; i < chosen.size(); ++i) {
      const Changes::Place place = changes_.place(chosen[i]);
      if (!after[i].model)
        ++tried_.refused;
      else if (!tav::compareModels(before_.get(), after[i].get()).empty())
        continue;
      else if (changes_.isWriting(place) || isPassedOver(place))
        ++tried_.without;
      else
        tried_.unnamed.emplace(changes_.kind(chosen[i]), name_ + ": " + changes_.path(place));
    }
  }

  /// Whether a place is on the list of what is passed over, itself or with what it stands in.
  bool isPassedOver(Changes::Place place) {
    std::vector<Changes::Place> places;
    for (std::optional around(place); around && changes_.around(*around); around = changes_.around(*around))
      places.push_back(*around);
    for (std::span<const Changes::Place> rest(places); !rest.empty();) {
      const auto some = rest.first(std::min(rest.size(), importer_.most));
      judge(some);
      if (std::any_of(some.begin(), some.end(), [&](Changes::Place one) { return passedOver_[one]; }))
        return true;
      rest = rest.subspan(some.size());
    }
    return false;
  }

  /// Finds out which of these places are on that list.
  void judge(std::span<const Changes::Place> places) {
    std::vector<Changes::Place> unknown;
    std::vector<std::string> texts;
    for (const Changes::Place place : places) {
      if (passedOver_.contains(place)) continue;
      unknown.push_back(place);
      texts.push_back(changes_.without(place));
    }
    if (unknown.empty()) return;
    const std::vector<Definition> without = importer_.importAll(texts);
    for (std::size_t i = 0; i < unknown.size(); ++i)
      passedOver_[unknown[i]] = without[i].model && isOnePassedOverLess(without[i]);
  }

  /// Whether something less is passed over in this definition, and nothing else is missing.
  bool isOnePassedOverLess(const Definition& without) {
    bool fewer = false;
    for (std::size_t i = 0; i < tav::kPassedOverCount; ++i) {
      const auto what = static_cast<tav::PassedOver>(i);
      fewer |= without.details->passedOver(what) < before_.details->passedOver(what);
    }
    return fewer && tav::compareModels(before_.get(), without.get()).empty();
  }

  std::string name_;
  const Importer& importer_;
  const Changes& changes_;
  Definition before_;
  Tried& tried_;
  std::map<Changes::Place, bool> passedOver_;
};

/// The kinds of changes that need no name, as the corpus lists them with their reasons: by the ends of their
/// paths.
class KnownKinds {
 public:
  KnownKinds() {
    for (const auto& c : tav::test::loadCorpus("changes/unnamed.txt")) {
      std::istringstream lines(c.input);
      for (std::string line; std::getline(lines, line);) ends_.insert(line);
    }
  }

  [[nodiscard]] bool contain(const std::string& kind) const {
    for (std::size_t at = 0; at != kind.npos; at = kind.find('/', at + 1))
      if (ends_.contains(kind.substr(at == 0 ? 0 : at + 1))) return true;
    return false;
  }

 private:
  std::set<std::string> ends_;
};

/// How many changes of an example are tried, and how much is read for all changes of a sample together.
struct Effort {
  std::size_t triesOfExample;
  std::size_t bytesOfSample;

  [[nodiscard]] std::size_t triesOfSample(const std::string& document) const {
    return bytesOfSample / (document.size() + 1) + 1;
  }
};

/// With this variable in the environment, ten times as much is tried as when nobody waits for more.
Effort timesThorough(const Effort& effort) {
  const std::size_t times = std::getenv("XMLA_THOROUGH") != nullptr ? 10 : 1;
  return {times * effort.triesOfExample, times * effort.bytesOfSample};
}

void tryXml(const fs::path& path, Tried& tried, const Effort& effort, bool isExample) {
  const std::string document = tav::test::readFile(path);
  // A document of other commands has none.
  if (document.find("<Database>") == document.npos && document.find("<Database ") == document.npos) return;
  const tav::test::XmlChanges changes(document);
  Trial(path.filename().string(), tav::test::kXml, document, changes, tried)
      .run(isExample ? effort.triesOfExample : effort.triesOfSample(document));
}

void expectNamed(const Tried& tried) {
  std::cout << tried.changes << " changes tried, " << tried.refused << " of them no definition, "
            << tried.without << " of what carries no meaning\n";
  const KnownKinds known;
  for (const auto& [kind, example] : tried.unnamed)
    EXPECT_TRUE(known.contain(kind)) << kind << " is not named by diff: " << example;
}

TEST(EveryChange, OfADefinitionIsNamed) {
  const Effort effort = timesThorough({1200, 12'000'000});
  Tried tried;
  for (const char* name : {"/murmeltal-huts.asdatabase", "/lost-property-create.xmla"})
    tryXml(EXAMPLES + std::string(name), tried, effort, true);
  if (fs::exists(SAMPLES "/multidimensional")) {
    for (const auto& entry : fs::directory_iterator(SAMPLES "/multidimensional"))
      if (entry.path().extension() == ".xmla" || entry.path().extension() == ".asdatabase")
        tryXml(entry.path(), tried, effort, false);
  }
  expectNamed(tried);
}

TEST(EveryChange, OfATabularDefinitionIsNamed) {
  const Effort effort = timesThorough({1000, 2'000'000});
  Tried tried;
  const auto tryOne = [&](const fs::path& path, bool isExample) {
    std::string document = tav::test::readFile(path);
    if (document.starts_with("\xEF\xBB\xBF")) document.erase(0, 3);
    const tav::test::JsonChanges changes(document);
    Trial(path.filename().string(), tav::test::kTabular, document, changes, tried)
        .run(isExample ? effort.triesOfExample : effort.triesOfSample(document));
  };
  tryOne(EXAMPLES "/ferry-line.bim", true);
  if (fs::exists(SAMPLES "/tabular"))
    for (const auto& entry : fs::directory_iterator(SAMPLES "/tabular")) tryOne(entry.path(), false);
  expectNamed(tried);
}

}  // namespace

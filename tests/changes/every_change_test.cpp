// Takes definitions, changes one thing at a time, and holds the answer of `diff` against that.

#include <gtest/gtest.h>

#include <algorithm>
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
  Trial(std::string name, const Importer& importer, std::string document, const Changes& changes,
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
    for (std::optional around(place); around && changes_.around(*around); around = changes_.around(*around))
      if (countsAsPassedOver(*around)) return true;
    return false;
  }

  /// Whether one thing less is passed over without this place, and nothing else is missing.
  bool countsAsPassedOver(Changes::Place place) {
    const auto [known, isNew] = passedOver_.try_emplace(place, false);
    if (!isNew) return known->second;
    const Definition without = importer_.importOne(changes_.without(place));
    if (!without.model) return false;
    bool fewer = false;
    for (std::size_t i = 0; i < tav::kPassedOverCount; ++i) {
      const auto what = static_cast<tav::PassedOver>(i);
      fewer |= without.details->passedOver(what) < before_.details->passedOver(what);
    }
    return known->second = fewer && tav::compareModels(before_.get(), without.get()).empty();
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

constexpr std::size_t kBytesOfSample = 16'000'000;  // read for all tries together

std::size_t triesOf(const std::string& document) {
  return kBytesOfSample / (document.size() + 1) + 1;
}

void tryXml(const fs::path& path, Tried& tried, std::size_t most) {
  const std::string document = tav::test::readFile(path);
  // A document of other commands has none.
  if (document.find("<Database>") == document.npos && document.find("<Database ") == document.npos) return;
  const tav::test::XmlChanges changes(document);
  Trial(path.filename().string(), tav::test::kXml, document, changes, tried)
      .run(most > 0 ? most : triesOf(document));
}

void expectNamed(const Tried& tried) {
  std::cout << tried.changes << " changes tried, " << tried.refused << " of them no definition, "
            << tried.without << " of what carries no meaning\n";
  const KnownKinds known;
  for (const auto& [kind, example] : tried.unnamed)
    EXPECT_TRUE(known.contain(kind)) << kind << " is not named by diff: " << example;
}

TEST(EveryChange, OfADefinitionIsNamed) {
  constexpr std::size_t kTriesOfExample = 1500;
  Tried tried;
  for (const char* name : {"/murmeltal-huts.asdatabase", "/lost-property-create.xmla"})
    tryXml(EXAMPLES + std::string(name), tried, kTriesOfExample);
  if (fs::exists(SAMPLES "/multidimensional")) {
    for (const auto& entry : fs::directory_iterator(SAMPLES "/multidimensional"))
      if (entry.path().extension() == ".xmla" || entry.path().extension() == ".asdatabase")
        tryXml(entry.path(), tried, 0);
  }
  expectNamed(tried);
}

TEST(EveryChange, OfATabularDefinitionIsNamed) {
  constexpr std::size_t kTriesOfExample = 1500;
  Tried tried;
  const auto tryOne = [&](const fs::path& path, std::size_t most) {
    std::string document = tav::test::readFile(path);
    if (document.starts_with("\xEF\xBB\xBF")) document.erase(0, 3);
    const tav::test::JsonChanges changes(document);
    Trial(path.filename().string(), tav::test::kTabular, document, changes, tried)
        .run(most > 0 ? most : triesOf(document));
  };
  tryOne(EXAMPLES "/ferry-line.bim", kTriesOfExample);
  if (fs::exists(SAMPLES "/tabular"))
    for (const auto& entry : fs::directory_iterator(SAMPLES "/tabular")) tryOne(entry.path(), 0);
  expectNamed(tried);
}

}  // namespace

// Takes definitions, changes one thing at a time, and holds the answer of `diff` against that.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <set>
#include <sstream>

#include "bridge/import.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/std/exception.h"
#include "lineage/model_diff.h"
#include "tests/support/corpus.h"
#include "tests/support/element_spans.h"

namespace {

namespace fs = std::filesystem;
using tav::test::Span;

struct NoLog : TAVLog {
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

/// Keeps what an import hands over.
struct Observer : tav::HostObserver {
  bool wantsDetails() override { return true; }
};

/// A definition that was imported, with its details.
class Definition {
 public:
  Definition(const tav::test::TemporaryFolder& folder, std::string_view text) {
    const fs::path path = folder.write("definition.xmla", text);
    NoLog log;
    try {
      model_.reset(execAsImport("test", TAVFile(TAVString(path.string())), &log));
    } catch (const TAVException&) {
      model_.reset();
    }
  }

  [[nodiscard]] bool isRead() const { return model_ != nullptr; }
  [[nodiscard]] tav::DetailedModel get() const { return {*model_, observer_.details()}; }

 private:
  Observer observer_;
  tav::Owned<TAVStoreModel> model_;
};

/// The last steps of a path, without numbers.
std::string kindOfPlace(std::string_view path) {
  std::string kind;
  std::size_t at = path.size();
  for (int steps = 2; steps > 0 && at != path.npos && at > 0; --steps) at = path.rfind('/', at - 1);
  bool number = false;
  for (const char c : path.substr(at == path.npos ? 0 : at + 1)) {
    number = c == '[' || (number && c != ']');
    if (!number && c != ']') kind += c;
  }
  return kind;
}

/// Whether an element stands in a list of its kind, "Levels/Level": of others a second one is not read, and
/// no server accepts it.
bool isOneOfSeveral(std::string_view path) {
  const std::string kind = kindOfPlace(path);
  const std::size_t slash = kind.find('/');
  if (slash == kind.npos) return false;
  const std::string_view parent = std::string_view(kind).substr(0, slash);
  const std::string_view tag = std::string_view(kind).substr(slash + 1);
  return parent == std::string(tag) + "s" || parent == std::string(tag.substr(0, tag.size() - 1)) + "ies";
}

/// All changes of a document, made when they are asked for. Those of one place stand together.
class Mutations {
 public:
  explicit Mutations(std::string document) : document_(std::move(document)) {
    elements_ = tav::test::findElements(document_);
    for (std::size_t i = 1; i < elements_.size(); ++i) {
      places_.push_back({&elements_[i], Way::removed});
      if (isOneOfSeveral(elements_[i].path)) places_.push_back({&elements_[i], Way::doubled});
      if (isLeaf(i)) places_.push_back({&elements_[i], Way::changed});
    }
    for (const Span& element : elements_)
      for (Span& attribute : tav::test::findAttributes(document_, element))
        attributes_.push_back(std::move(attribute));
    for (const Span& attribute : attributes_) {
      places_.push_back({&attribute, Way::removed});
      places_.push_back({&attribute, Way::changed});
    }
  }

  [[nodiscard]] std::size_t size() const { return places_.size(); }
  [[nodiscard]] const Span& span(std::size_t i) const { return *places_[i].span; }
  /// "Attribute/Name changed": which kind of place is changed how.
  [[nodiscard]] std::string kind(std::size_t i) const {
    constexpr std::array<std::string_view, 3> kWays{" removed", " doubled", " changed"};
    return kindOfPlace(places_[i].span->path).append(kWays[static_cast<std::size_t>(places_[i].way)]);
  }

  /// The element that a span stands in; null for the root.
  [[nodiscard]] const Span* around(const Span& span) const {
    const Span* around = nullptr;
    const auto behind = std::partition_point(elements_.begin(), elements_.end(),
                                             [&](const Span& element) { return element.begin < span.begin; });
    for (auto element = behind; element != elements_.begin() && !around;)
      if (--element; element->end >= span.end) around = &*element;
    return around;
  }

  [[nodiscard]] std::string at(std::size_t i) const {
    const auto [span, way] = places_[i];
    const std::string_view text = document_;
    const auto replaced = [&](std::size_t begin, std::size_t end, std::string_view by) {
      return std::string(text.substr(0, begin)).append(by).append(text.substr(end));
    };
    switch (way) {
      case Way::removed:
        return replaced(span->begin, span->end, "");
      case Way::doubled:
        return replaced(span->end, span->end, text.substr(span->begin, span->end - span->begin));
      default:
        return replaced(span->contentBegin, span->contentEnd,
                        otherValue(text.substr(span->contentBegin, span->contentEnd - span->contentBegin)));
    }
  }

 private:
  enum class Way { removed, doubled, changed };
  struct Place {
    const Span* span;
    Way way;
  };

  [[nodiscard]] bool isLeaf(std::size_t i) const {
    return !elements_[i].isOneTag() &&
           (i + 1 == elements_.size() || elements_[i + 1].begin >= elements_[i].contentEnd);
  }

  /// Another value of the same type, as far as the text tells its type.
  static std::string otherValue(std::string_view value) {
    if (value == "true") return "false";
    if (value == "false") return "true";
    if (!value.empty() && value.find_first_not_of("0123456789") == value.npos)
      return value == "1" ? "2" : "1";
    return std::string(value) + "X";
  }

  std::string document_;
  std::vector<Span> elements_;
  std::vector<Span> attributes_;
  std::vector<Place> places_;
};

/// How a document is written: namespaces, the types of XML Schema, the empty instance behind a view's schema.
bool isWriting(const Span& span) {
  const std::string kind = kindOfPlace(span.path);
  return span.path.find("@xmlns") != span.path.npos || span.path.ends_with("@xsi:type") ||
         (kind.starts_with("Schema/") && !kind.starts_with("Schema/xs:"));
}

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
  Trial(const fs::path& path, Tried& tried)
      : name_(path.filename().string()),
        document_(tav::test::readFile(path)),
        before_(folder_, document_),
        tried_(tried) {}

  /// So many changes: of each kind that was not tried yet, then others that are spread over the document.
  void run(std::size_t most) {
    // A document of other commands has none.
    if (!before_.isRead() || !definesDatabase()) return;
    const Mutations mutations(document_);
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; i < mutations.size() && chosen.size() < most; ++i)
      if (tried_.kinds.insert(mutations.kind(i)).second) chosen.push_back(i);
    const std::size_t step = std::max<std::size_t>(mutations.size() / (most - chosen.size() + 1), 1);
    for (std::size_t i = step / 2; i < mutations.size() && chosen.size() < most; i += step)
      chosen.push_back(i);
    for (const std::size_t i : chosen) tryOne(mutations, i);
  }

 private:
  [[nodiscard]] bool definesDatabase() const {
    return document_.find("<Database>") != document_.npos || document_.find("<Database ") != document_.npos;
  }

  void tryOne(const Mutations& mutations, std::size_t i) {
    const Definition after(folder_, mutations.at(i));
    ++tried_.changes;
    if (!after.isRead())
      ++tried_.refused;
    else if (!tav::compareModels(before_.get(), after.get()).empty())
      return;
    else if (isWriting(mutations.span(i)) || isPassedOver(mutations, mutations.span(i)))
      ++tried_.without;
    else
      tried_.unnamed.emplace(mutations.kind(i), name_ + ": " + mutations.span(i).path);
  }

  /// Whether a place is on the list of what is passed over, itself or with what it stands in.
  bool isPassedOver(const Mutations& mutations, const Span& span) {
    if (countsAsPassedOver(span)) return true;
    for (const Span* around = mutations.around(span); around; around = mutations.around(*around))
      if (countsAsPassedOver(*around)) return true;
    return false;
  }

  /// Whether one thing less is passed over without this place, and nothing else is missing.
  bool countsAsPassedOver(const Span& span) {
    const auto [known, isNew] = passedOver_.try_emplace(span.begin, false);
    if (!isNew) return known->second;
    const Definition without(folder_, std::string(document_).erase(span.begin, span.end - span.begin));
    if (!without.isRead()) return false;
    bool fewer = false;
    for (std::size_t i = 0; i < tav::kPassedOverCount; ++i) {
      const auto what = static_cast<tav::PassedOver>(i);
      fewer |= without.get().details->passedOver(what) < before_.get().details->passedOver(what);
    }
    return known->second = fewer && tav::compareModels(before_.get(), without.get()).empty();
  }

  tav::test::TemporaryFolder folder_;
  std::string name_;
  std::string document_;
  Definition before_;
  Tried& tried_;
  std::map<std::size_t, bool> passedOver_;  // by the place where a span begins
};

/// The kinds of changes that need no name, or have none yet, as the corpus lists them with their reasons.
std::set<std::string> knownKinds() {
  std::set<std::string> known;
  for (const auto& c : tav::test::loadCorpus("changes/unnamed.txt")) {
    std::istringstream lines(c.input);
    for (std::string line; std::getline(lines, line);) known.insert(line);
  }
  return known;
}

TEST(EveryChange, OfADefinitionIsNamed) {
  constexpr std::size_t kTriesOfExample = 1500;
  constexpr std::size_t kBytesOfSample = 16'000'000;  // read for all tries together
  Tried tried;
  for (const char* name : {"/murmeltal-huts.asdatabase", "/lost-property-create.xmla"})
    Trial(EXAMPLES + std::string(name), tried).run(kTriesOfExample);
  if (fs::exists(SAMPLES "/multidimensional")) {
    for (const auto& entry : fs::directory_iterator(SAMPLES "/multidimensional"))
      if (entry.path().extension() == ".xmla" || entry.path().extension() == ".asdatabase")
        Trial(entry.path(), tried).run(kBytesOfSample / (entry.file_size() + 1) + 1);
  }
  std::cout << tried.changes << " changes tried, " << tried.refused << " of them no definition, "
            << tried.without << " of what carries no meaning\n";
  const std::set<std::string> known = knownKinds();
  for (const auto& [kind, example] : tried.unnamed)
    EXPECT_TRUE(known.contains(kind)) << kind << " is not named by diff: " << example;
}

}  // namespace

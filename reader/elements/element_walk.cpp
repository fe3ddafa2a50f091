#include "reader/elements/element_walk.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "reader/elements/annotations.h"
#include "reader/elements/element_shape.h"
#include "reader/elements/value_reader.h"
#include "reader/elements/view_details.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

struct DatabasePart {
  const TAVDOMElement* element;
  const TAVDOMElement* before;  ///< the last part in front of it that has child elements; null without one
};

/// The parts of a database in the order in which they refer to each other, as far as their names are needed
/// at once: cubes to dimensions, mining structures to cubes.
std::vector<DatabasePart> partsOf(const TAVDOMElement& database) {
  std::vector<DatabasePart> parts;
  const TAVDOMElement* before = nullptr;
  for (const TAVDOMElement& element : database.getElements()) {
    parts.push_back({&element, before});
    if (!isLeaf(element)) before = &element;
  }
  const auto rank = [](const DatabasePart& part) {
    const std::string_view tag = part.element->getLocalName();
    if (tag == kCubes) return 1;
    return tag == "MiningStructures" ? 2 : 0;
  };
  std::stable_sort(parts.begin(), parts.end(),
                   [&](const DatabasePart& a, const DatabasePart& b) { return rank(a) < rank(b); });
  return parts;
}

/// Whether an element is the name, ID or description of its item, or a label that is no more than that.
bool isSaid(const TAVDOMElement& element, const ElementPlace& parent) {
  if (!parent.isItem) return &element == parent.label;
  const std::string_view tag = element.getLocalName();
  return tag == kName || tag == kId || tag == kDescription;
}

bool foldsAll(Reading reading) {
  return reading == Reading::fold || reading == Reading::namedFold || reading == Reading::annotation ||
         reading == Reading::attributeCopy;
}

/// Goes through one definition and lets the readers read what stands in it. It keeps the way down to where it
/// is itself: definitions may be of any depth.
class ElementWalk {
 public:
  ElementWalk(ImportRun& run, IdReferences& references)
      : reading_(run, references), items_(reading_), mdx_(reading_), values_(reading_, items_, mdx_) {}

  void read(const TAVDOMElement& database) {
    ElementPlace root;
    root.element = &database;
    root.node = RuleTree::root();
    root.item = reading_.details.itemOf(*reading_.run.model);
    root.scope = &reading_.scopes.root();
    root.isItem = true;
    items_.readOwn(root, reading_.run.model);
    values_.readAttributes(root);
    for (const DatabasePart& part : partsOf(database)) {
      startRelease(part);
      enter(*part.element, root, 0);
      while (!places_.empty()) step();
    }
  }

 private:
  void step() {
    ElementPlace& place = places_.back();  // stays where it is when others come and go behind it
    if (place.next < place.element->getElementCount()) {
      const std::int32_t index = place.next++;
      enter(*place.element->getElement(index), place, index);
    } else {
      leave(place);
      release(*place.element);
      places_.pop_back();
    }
  }

  void enter(const TAVDOMElement& element, const ElementPlace& parent, std::int32_t index) {
    const RuleTree::Node node = childOf(parent.node, element.getLocalName());
    const ElementRule& rule = reading_.rules.rule(node);
    if (rule.reading == Reading::known) return;
    if (rule.reading == Reading::byContent && isSaid(element, parent)) return;
    if (rule.reading == Reading::passedOver) return reading_.details.passOver(rule.what);
    if (rule.reading == Reading::annotation && isDesignerLayout(element))
      return reading_.details.passOver(PassedOver::designerLayout);
    if (isLeaf(element))
      values_.read(element, node, parent);
    else
      open(element, node, parent, index);
  }

  /// Names are kept once for the document, so that those of elements are known again by their places.
  RuleTree::Node childOf(RuleTree::Node parent, std::string_view name) {
    const auto [known, isNew] = children_.try_emplace({parent, name.data()});
    if (isNew) known->second = reading_.rules.child(parent, name);
    return known->second;
  }

  void open(const TAVDOMElement& element, RuleTree::Node node, const ElementPlace& parent,
            std::int32_t index) {
    const ElementRule& rule = reading_.rules.rule(node);
    ElementPlace& place = places_.emplace_back();
    place.element = &element;
    place.node = node;
    place.item = parent.item;
    place.columns = parent.columns;
    place.text = parent.text;
    place.place = reading_.settings.place();
    place.settingCount = reading_.details.settings().size();
    place.isList = (rule.reading == Reading::byContent || rule.reading == Reading::part) && isList(element);
    const IdScope& outer =
        rule.reading == Reading::source ? reading_.scopes.linked(*parent.scope) : *parent.scope;
    place.scope = &reading_.scopes.of(element, rule, outer);
    if (rule.reading == Reading::attributeCopy && items_.readCopy(place)) return places_.pop_back();
    openAsWhatItIs(place, parent, index);
    values_.readBinding(place);
    values_.readAttributes(place);
  }

  void openAsWhatItIs(ElementPlace& place, const ElementPlace& parent, std::int32_t index) {
    const ElementRule& rule = reading_.rule(place);
    if (rule.reading == Reading::calculation) return mdx_.openCalculation(place);
    if (!isItem(place, parent)) return openPart(place, parent, index);
    const TAVModelObject* object = items_.findObject(place);
    if (!object && rule.kind == ObjectKind::cubeAttribute) return openPart(place, parent, 0);
    items_.open(place, parent.item, object);
  }

  /// A rule says so, or nothing says anything and the element, one of a list, has an ID of its own.
  bool isItem(const ElementPlace& place, const ElementPlace& parent) const {
    const Reading reading = reading_.rule(place).reading;
    if (reading != Reading::byContent) return reading == Reading::item;
    return parent.isList && !place.isList && !reading_.settings.isFolding() &&
           place.element->getFirstElement(kId);
  }

  void openPart(ElementPlace& place, const ElementPlace& parent, std::int32_t index) {
    takeColumns(place, parent, index);
    if (place.isList) return;
    const TAVDOMElement* label = parent.isList ? findLabel(*place.element) : nullptr;
    place.label = label;
    if (label && isLanguage(*label)) place.text = label->getValue();
    std::string name(place.element->getLocalName());
    if (parent.isList && !label && index > 0) (name += '.') += std::to_string(index + 1);
    SettingWriter& settings = reading_.settings;
    if (foldsAll(reading_.rule(place).reading) && !settings.isFolding())
      return openFold(place, std::move(name));
    settings.goDown(name);
    if (!label) return;
    if (settings.isFolding())
      place.label = nullptr;
    else
      settings.goDown(label->getValue());
  }

  void openFold(ElementPlace& place, std::string name) {
    place.isFold = true;
    const Reading reading = reading_.rule(place).reading;
    const std::string_view label = place.label ? place.label->getValue() : std::string_view();
    // Whether what an annotation says is secret is told by the name of its setting.
    if (reading == Reading::annotation)
      reading_.settings.beginFold((name += '.') += annotationName(label), {});
    else if (reading == Reading::namedFold && place.label)
      reading_.settings.beginFold((name += '.') += label, {});
    else
      reading_.settings.beginFold(name, label);
  }

  /// What columns are to the item that are bound in this part of it.
  void takeColumns(ElementPlace& place, const ElementPlace& parent, std::int32_t index) {
    constexpr std::string_view kGranularity = "Granularity";
    const ElementRule& rule = reading_.rule(place);
    if (rule.relation != RelationKind::mentions) place.columns = rule.relation;
    if (rule.relation == RelationKind::key && place.element->getFirstElementValue(kType) == kGranularity)
      place.columns = RelationKind::granularity;
    // Which of several key columns it is.
    if (parent.isList && parent.element->getElementCount() > 1 &&
        place.element->getLocalName().ends_with("Column"))
      place.text = numberText(index);
  }

  /// Nobody looks at the elements of cubes again.
  void startRelease(const DatabasePart& part) {
    released_.reset();
    if (part.before && part.element->getLocalName() == kCubes)
      released_ = reading_.run.document->endOf(*part.before);
  }

  void release(const TAVDOMElement& element) {
    if (released_) released_ = reading_.run.document->release(*released_, element);
  }

  std::string_view numberText(std::int32_t index) {
    while (static_cast<std::size_t>(index) >= numbers_.size())
      numbers_.push_back(std::to_string(numbers_.size() + 1));
    return numbers_[static_cast<std::size_t>(index)];
  }

  void leave(const ElementPlace& place) {
    const bool hasName = place.label && !isReference(*place.label);
    SettingWriter& settings = reading_.settings;
    if (place.isFold) {
      settings.endFold(place.item, hasName);
    } else if (place.isItem) {
      items_.close(place);
    } else if (hasName && reading_.details.settings().size() == place.settingCount) {
      // It has nothing but its label, which the name of no setting says.
      settings.goBack(place.place);
      settings.set(place.item, place.element->getLocalName(), place.label->getValue());
    }
    settings.goBack(place.place);
  }

  using ChildKey = std::pair<RuleTree::Node, const char*>;
  struct ChildHash {
    std::size_t operator()(const ChildKey& key) const noexcept {
      return std::hash<const void*>()(key.second) * 31 + key.first;
    }
  };

  ElementReading reading_;
  ItemReader items_;
  MdxReader mdx_;
  ValueReader values_;
  std::unordered_map<ChildKey, RuleTree::Node, ChildHash> children_;
  std::deque<ElementPlace> places_;
  std::deque<std::string> numbers_;        // texts of relations, from 1
  std::optional<TAVDOM::Place> released_;  // up to which elements are given back, where they are
};

}  // namespace

void readDetails(ImportRun& run, const TAVDOMElement& database) {
  IdReferences references(run);
  ElementWalk walk(run, references);
  walk.read(database);
  readViewDetails(run, database, references);
  references.resolve();
}

}  // namespace tav

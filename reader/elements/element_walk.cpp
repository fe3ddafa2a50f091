#include "reader/elements/element_walk.h"

#include <algorithm>
#include <array>
#include <deque>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/std/dotted_name.h"
#include "reader/elements/annotations.h"
#include "reader/elements/element_rules.h"
#include "reader/elements/id_scopes.h"
#include "reader/elements/partition_queries.h"
#include "reader/elements/references.h"
#include "reader/elements/setting_writer.h"
#include "reader/elements/view_details.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view kGranularity = "Granularity";
constexpr std::string_view kLanguage = "Language";
constexpr std::string_view kHierarchyId = "HierarchyID";
constexpr std::string_view kCubeDimensionId = "CubeDimensionID";
constexpr std::string_view kCalculationReference = "CalculationReference";

/// Types that what an element holds tells as well, or that it has where nothing is said.
constexpr std::array<std::string_view, 12> kPlainTypes{"ColumnBinding",
                                                       "CubeAttributeBinding",
                                                       "DataSourceViewBinding",
                                                       "DsvTableBinding",
                                                       "InheritedBinding",
                                                       "MeasureBinding",
                                                       "ProactiveCachingInheritedBinding",
                                                       "QueryBinding",
                                                       "RegularMeasureGroupDimension",
                                                       "RelationalDataSource",
                                                       "RowBinding",
                                                       "ScalarMiningStructureColumn"};

std::string_view typeOf(const TAVDOMElement& element) {
  if (element.getAttributes().empty()) return {};
  const std::string_view type = element.getAttributeNS(kSchemaInstance, "type");
  const bool isPlain = std::find(kPlainTypes.begin(), kPlainTypes.end(), type) != kPlainTypes.end();
  return isPlain ? std::string_view() : type;
}

bool isLeaf(const TAVDOMElement& element) {
  return element.getElementCount() == 0;
}

bool isReference(const TAVDOMElement& element) {
  const std::string_view tag = element.getLocalName();
  return tag.size() > kId.size() && tag.ends_with(kId);
}

/// Whether an element is there to hold others of one kind: Attributes, Hierarchies, Aliases.
bool isList(const TAVDOMElement& element) {
  if (isLeaf(element)) return false;
  const std::string_view list = element.getLocalName();
  const std::string_view part = element.getElement(0)->getLocalName();
  return list.size() > part.size() && list.starts_with(part.substr(0, part.size() - 1));
}

/// What tells an element from others of its list: a language, an ID that it refers to, or its name.
const TAVDOMElement* findLabel(const TAVDOMElement& element) {
  const TAVDOMElement* label = nullptr;
  for (const TAVDOMElement& child : element.getElements()) {
    const std::string_view tag = child.getLocalName();
    if (!isLeaf(child)) continue;
    if (tag == kLanguage || isReference(child)) return &child;
    if (tag == kName || (tag == kId && !label)) label = &child;
  }
  return label;
}

std::string_view firstOf(std::string_view a, std::string_view b) {
  return a.empty() ? b : a;
}

/// The name that the model has for what an element was made into.
std::string_view nameInModel(const TAVModelObject& object) {
  const auto* use = as<TAVHierarchyLevelAssociation>(&object);
  return use && use->level ? use->level->getName() : object.getName();
}

/// Whether two elements hold the same, designers' notes aside.
bool areEqual(const TAVDOMElement& a, const TAVDOMElement& b) {
  std::vector<std::pair<const TAVDOMElement*, const TAVDOMElement*>> pairs{{&a, &b}};
  while (!pairs.empty()) {
    const auto [first, second] = pairs.back();
    pairs.pop_back();
    if (first->getLocalName() != second->getLocalName() || first->getValue() != second->getValue() ||
        first->getElementCount() != second->getElementCount() || typeOf(*first) != typeOf(*second))
      return false;
    for (std::int32_t i = 0; i < first->getElementCount(); ++i)
      pairs.emplace_back(first->getElement(i), second->getElement(i));
  }
  return true;
}

/// What a script makes of what has such properties.
ObjectKind calculationKind(std::string_view type) {
  if (type == "Set") return ObjectKind::namedSet;
  if (type == "Member") return ObjectKind::calculatedMember;
  return type == "Cells" ? ObjectKind::calculatedCells : ObjectKind::other;
}

/// The parts of a database in the order in which they refer to each other, as far as their names are needed
/// at once: cubes to dimensions, mining structures to cubes.
std::vector<const TAVDOMElement*> partsOf(const TAVDOMElement& database) {
  std::vector<const TAVDOMElement*> parts;
  for (const TAVDOMElement& part : database.getElements()) parts.push_back(&part);
  const auto rank = [](const TAVDOMElement* part) {
    const std::string_view tag = part->getLocalName();
    if (tag == kCubes) return 1;
    return tag == "MiningStructures" ? 2 : 0;
  };
  std::stable_sort(parts.begin(), parts.end(),
                   [&](const TAVDOMElement* a, const TAVDOMElement* b) { return rank(a) < rank(b); });
  return parts;
}

/// Reads one definition. It keeps the way down to where it is itself: definitions may be of any depth.
class ElementWalk {
 public:
  ElementWalk(ImportRun& run, IdReferences& references)
      : run_(run),
        details_(*run.details),
        references_(references),
        queries_(run, references),
        settings_(*run.details) {}

  void read(const TAVDOMElement& database) {
    Frame root;
    root.element = &database;
    root.node = RuleTree::root();
    root.item = details_.itemOf(*run_.model);
    root.scope = &scopes_.root();
    root.isItem = true;
    readOwn(root, run_.model);
    readAttributes(root);
    for (const TAVDOMElement* part : partsOf(database)) {
      enter(*part, root, 0);
      while (!frames_.empty()) step();
    }
  }

 private:
  /// An element that the walk is in.
  struct Frame {
    const TAVDOMElement* element = nullptr;
    RuleTree::Node node = 0;
    ItemId item = kNoItem;
    const IdScope* scope = nullptr;
    RelationKind columns = RelationKind::mentions;  // of columns bound below
    std::string_view text;                          // of such relations
    const TAVDOMElement* label = nullptr;           // what the names of its settings say already
    std::int32_t next = 0;                          // child
    std::size_t place = 0;                          // in the path of settings
    std::size_t outerBegin = 0;                     // of an item: where such paths began outside
    std::size_t settingCount = 0;                   // before it
    bool isItem = false;
    bool isList = false;
    bool isFold = false;
  };

  void step() {
    Frame& frame = frames_.back();  // stays where it is when others come and go behind it
    if (frame.next < frame.element->getElementCount()) {
      const std::int32_t index = frame.next++;
      enter(*frame.element->getElement(index), frame, index);
    } else {
      leave(frame);
      frames_.pop_back();
    }
  }

  void enter(const TAVDOMElement& element, const Frame& parent, std::int32_t index) {
    const RuleTree::Node node = rules_.child(parent.node, element.getLocalName());
    const ElementRule& rule = rules_.rule(node);
    if (rule.reading == Reading::known) return;
    if (rule.reading == Reading::byContent && isSaid(element, parent)) return;
    if (rule.reading == Reading::passedOver) return details_.passOver(rule.what);
    if (rule.reading == Reading::annotation && isDesignerLayout(element))
      return details_.passOver(PassedOver::designerLayout);
    if (isLeaf(element))
      readLeaf(element, node, parent);
    else
      open(element, node, parent, index);
  }

  /// Whether an element is the name, ID or description of its item, or a label that is no more than that.
  static bool isSaid(const TAVDOMElement& element, const Frame& parent) {
    if (!parent.isItem) return &element == parent.label;
    const std::string_view tag = element.getLocalName();
    return tag == kName || tag == kId || tag == kDescription;
  }

  void readLeaf(const TAVDOMElement& element, RuleTree::Node node, const Frame& parent) {
    const ElementRule& rule = rules_.rule(node);
    const std::string_view tag = element.getLocalName();
    const std::string_view value = element.getValue();
    switch (rule.reading) {
      case Reading::reference:
        addReference(element, rule, parent);
        break;
      case Reading::query:
        details_.setText(parent.item, value, "sql");
        queries_.add(parent.item, value, parent.element->getFirstElementValue("DataSourceID"));
        break;
      case Reading::connection:
        if (!isShownConnection(parent)) settings_.set(parent.item, tag, value);
        break;
      case Reading::table:
        queries_.addTable(parent.item, *parent.element);
        settings_.set(parent.item, tag, value);
        break;
      case Reading::target:
        addTarget(parent, rule, value);
        settings_.set(parent.item, tag, value);
        break;
      case Reading::calculationName:
        addCalculationName(parent, value, rule.relation);
        break;
      case Reading::relatedName:
        if (nameOfAttribute(parent.element->getFirstElementValue(kAttributeId)) == value) break;
        settings_.set(parent.item, tag, value);
        break;
      case Reading::expression:
        if (!value.empty()) addExpression(parent, value, rule.relation);
        if (&element != parent.label) settings_.set(parent.item, tag, value);
        break;
      default:
        // The ID of what is called by it already.
        if (tag == kId && parent.label && parent.label->getValue() == value) break;
        settings_.set(parent.item, isNoted(element, parent) ? std::string_view() : tag,
                      firstOf(value, typeOf(element)));
    }
    if (element.getAttributes().empty()) return;
    Frame leaf = parent;
    leaf.element = &element;
    leaf.node = node;
    settings_.goDown(tag);
    readAttributes(leaf);
    settings_.goBack(settings_.place() - tag.size() - 1);
  }

  /// Whether an element is what an annotation says.
  bool isNoted(const TAVDOMElement& element, const Frame& parent) const {
    return parent.isFold && rules_.rule(parent.node).reading == Reading::annotation &&
           element.getLocalName() == kValue;
  }

  /// Whether the model keeps the connection of a data source: not one that feeds nothing.
  bool isShownConnection(const Frame& frame) const {
    const auto* connection = as<TAVStoreConnection>(details_.item(frame.item).object);
    return connection && !connection->connectionClassifiers.empty();
  }

  /// The name of an attribute of the dimension that is read, which may come later.
  std::string_view nameOfAttribute(std::string_view id) const {
    const auto found = attributeNames_.find(id);
    return found == attributeNames_.end() ? std::string_view() : found->second;
  }

  void nameAttributes(const TAVDOMElement& dimension) {
    attributeNames_ = {};
    const TAVDOMElement* attributes = dimension.getFirstElement(kAttributes);
    if (!attributes) return;
    for (const TAVDOMElement& attribute : attributes->getElements())
      attributeNames_.try_emplace(attribute.getFirstElementValue(kId), attribute.getFirstElementValue(kName));
  }

  void addExpression(const Frame& frame, std::string_view text, RelationKind relation) {
    run_.expressions.push_back(
        {frame.item, text, relation, frame.scope->cubeObject, frame.scope->dimensionObject});
  }

  /// Sets are called by their bare names, which may hold blanks.
  void addCalculationName(const Frame& frame, std::string_view name, RelationKind relation) {
    if (name.find('[') == std::string_view::npos)
      name = run_.texts.emplace_back("[" + std::string(name) + "]");
    addExpression(frame, name, relation);
  }

  /// What an action is offered on: `MeasureGroupMeasures("Sales")`, or any expression.
  void addTarget(const Frame& frame, const ElementRule& rule, std::string_view text) {
    constexpr std::string_view kCall = "MeasureGroupMeasures(\"";
    constexpr std::string_view kEnd = "\")";
    if (!text.starts_with(kCall) || !text.ends_with(kEnd)) return addExpression(frame, text, rule.relation);
    const std::string_view name = text.substr(kCall.size(), text.size() - kCall.size() - kEnd.size());
    references_.add(IdReference{frame.item, rule.relation, rule.space, frame.scope, name, "Target", {}});
  }

  void addReference(const TAVDOMElement& element, const ElementRule& rule, const Frame& parent) {
    const std::string_view tag = element.getLocalName();
    const bool isGranularity =
        rule.relation == RelationKind::uses && parent.columns == RelationKind::granularity;
    const IdScope* scope = parent.scope;
    // An attribute of the dimension beside it.
    if (tag == "IntermediateGranularityAttributeID")
      scope = &scopes_.inCubeDimension(*scope,
                                       parent.element->getFirstElementValue("IntermediateCubeDimensionID"));
    references_.add(IdReference{parent.item, isGranularity ? RelationKind::granularity : rule.relation,
                                rule.space, scope, element.getValue(), tag, parent.text});
    // Among the folded values the ID alone tells what is meant.
    if (settings_.isFolding() && &element != parent.label) settings_.set(parent.item, {}, element.getValue());
  }

  void open(const TAVDOMElement& element, RuleTree::Node node, const Frame& parent, std::int32_t index) {
    const ElementRule& rule = rules_.rule(node);
    Frame& frame = frames_.emplace_back();
    frame.element = &element;
    frame.node = node;
    frame.item = parent.item;
    frame.columns = parent.columns;
    frame.text = parent.text;
    frame.place = settings_.place();
    frame.settingCount = details_.settings().size();
    frame.isList = (rule.reading == Reading::byContent || rule.reading == Reading::part) && isList(element);
    const IdScope& outer = rule.reading == Reading::source ? scopes_.linked(*parent.scope) : *parent.scope;
    frame.scope = &scopes_.of(element, rule, outer);
    if (rule.reading == Reading::attributeCopy && isCopy(frame)) return frames_.pop_back();
    if (isItem(frame, parent))
      openItem(frame, parent);
    else if (rule.reading == Reading::calculation)
      openCalculation(frame);
    else
      openPart(frame, parent, index);
    readBinding(frame);
    readAttributes(frame);
  }

  /// Whether a measure group only repeats how an attribute is keyed; then it uses the attribute and says no
  /// more of it.
  bool isCopy(const Frame& frame) {
    const TAVDOMElement& element = *frame.element;
    const std::string_view id = element.getFirstElementValue(kAttributeId);
    const auto original = originals_.find(references_.ids().findInDimension(*frame.scope, id));
    const TAVDOMElement* type = element.getFirstElement(kType);
    const TAVDOMElement* keys = element.getFirstElement(kKeyColumns);
    const std::int32_t others = (type ? 1 : 0) + (keys ? 1 : 0) + 1;
    if (original == originals_.end() || element.getElementCount() != others) return false;
    if (type && type->getValue() != "Regular") return false;
    const TAVDOMElement* originalKeys = original->second->getFirstElement(kKeyColumns);
    if (keys && !(originalKeys && areEqual(*keys, *originalKeys))) return false;
    references_.add(
        IdReference{frame.item, RelationKind::uses, IdSpace::attribute, frame.scope, id, kAttributeId, {}});
    return true;
  }

  /// A rule says so, or nothing says anything and the element, one of a list, has an ID of its own.
  bool isItem(const Frame& frame, const Frame& parent) const {
    const Reading reading = rules_.rule(frame.node).reading;
    if (reading != Reading::byContent) return reading == Reading::item;
    return parent.isList && !frame.isList && !settings_.isFolding() && frame.element->getFirstElement(kId);
  }

  void openItem(Frame& frame, const Frame& parent) {
    const ElementRule& rule = rules_.rule(frame.node);
    const TAVModelObject* object = run_.elements.find(*frame.element);
    if (rule.kind == ObjectKind::cubeAttribute) {
      object = references_.ids().findCubeAttribute(*frame.scope,
                                                   frame.element->getFirstElementValue(kAttributeId));
      if (!object) return openPart(frame, parent, 0);
      listed_.insert(object);
    }
    frame.isItem = true;
    frame.outerBegin = settings_.begin();
    frame.columns = rule.relation;
    frame.text = {};
    frame.item = object ? details_.itemOf(*object) : details_.add(rule.kind, parent.item, nameOf(frame));
    enterIds(frame);
    if (rule.kind == ObjectKind::dimension) nameAttributes(*frame.element);
    if (rule.kind == ObjectKind::attribute) originals_.try_emplace(frame.item, frame.element);
    if (rule.toOwner == RelationKind::secures)
      references_.relate(rule.toOwner, parent.item, frame.item);
    else if (rule.toOwner != RelationKind::mentions)
      references_.relate(rule.toOwner, frame.item, parent.item);
    if (rule.kind == ObjectKind::dimension || rule.kind == ObjectKind::cube)
      frame.scope = &scopes_.naming(*frame.scope, object);
    readOwn(frame, object);
  }

  std::string_view nameOf(const Frame& frame) {
    const TAVDOMElement& element = *frame.element;
    switch (rules_.rule(frame.node).kind) {
      case ObjectKind::cubeHierarchy:
        return nameOf(IdSpace::originalHierarchy, *frame.scope, element.getFirstElementValue(kHierarchyId));
      case ObjectKind::dimensionUsage:
        return nameOf(IdSpace::cubeDimension, *frame.scope, element.getFirstElementValue(kCubeDimensionId));
      default:
        return firstOf(element.getFirstElementValue(kName), element.getFirstElementValue(kId));
    }
  }

  std::string_view nameOf(IdSpace space, const IdScope& scope, std::string_view id) {
    const auto found = references_.ids().find(space, scope, id);
    if (!found) return id;
    const DetailItem& item = details_.item(*found);
    return item.object ? nameInModel(*item.object) : item.name;
  }

  void enterIds(const Frame& frame) {
    const ElementRule& rule = rules_.rule(frame.node);
    const TAVDOMElement& element = *frame.element;
    IdRegistry& ids = references_.ids();
    const std::string_view id = element.getFirstElementValue(kId);
    if (rule.space != IdSpace::none) ids.add(rule.space, *frame.scope, id, frame.item);
    if (rule.kind == ObjectKind::measureGroup)
      ids.add(IdSpace::measureGroupName, *frame.scope, element.getFirstElementValue(kName), frame.item);
    if (rule.kind == ObjectKind::cubeHierarchy)
      ids.add(IdSpace::hierarchy, *frame.scope, element.getFirstElementValue(kHierarchyId), frame.item);
    if (rule.kind == ObjectKind::cubeDimension)
      ids.addCubeDimension(*frame.scope, id, element.getFirstElementValue(kDimensionId));
  }

  /// What an item says of itself, as far as neither the model nor the item itself has it.
  void readOwn(const Frame& frame, const TAVModelObject* object) {
    const std::string_view name = frame.element->getFirstElementValue(kName);
    const std::string_view id = frame.element->getFirstElementValue(kId);
    const std::string_view description = frame.element->getFirstElementValue(kDescription);
    const std::string_view known = object ? nameInModel(*object) : details_.item(frame.item).name;
    if (!name.empty() && name != known) details_.set(frame.item, kName, name);
    if (!id.empty() && id != name) details_.set(frame.item, kId, id);
    const auto* described = as<TAVElement>(object);
    if (!description.empty() && !(described && described->description == description))
      details_.set(frame.item, kDescription, description);
  }

  /// What is said of a calculated measure beside the script that defines it, or of a set or cells there.
  void openCalculation(Frame& frame) {
    constexpr std::string_view kPrefix = "[Measures].[";
    frame.label = frame.element->getFirstElement(kCalculationReference);
    frame.outerBegin = settings_.begin();
    frame.isItem = true;
    const std::string_view name = frame.element->getFirstElementValue(kCalculationReference);
    const TAVCube* cube = frame.scope->cubeObject;
    if (cube && name.starts_with(kPrefix) && name.ends_with(']')) {
      const std::string_view own = name.substr(kPrefix.size(), name.size() - kPrefix.size() - 1);
      if (const TAVMeasure* measure = run_.elements.findCalculated(*cube, own)) {
        frame.item = details_.itemOf(*measure);
        return;
      }
    }
    const ObjectKind kind = calculationKind(frame.element->getFirstElementValue("CalculationType"));
    const ItemId owner = cube && kind != ObjectKind::other ? details_.itemOf(*cube) : frame.item;
    const bool hasBareName = kind == ObjectKind::namedSet || kind == ObjectKind::calculatedCells;
    frame.item = details_.add(kind, owner, hasBareName ? unquotedPart(name) : std::string(name));
    addCalculationName(frame, name, RelationKind::mentions);
  }

  void openPart(Frame& frame, const Frame& parent, std::int32_t index) {
    takeColumns(frame, parent, index);
    if (frame.isList) return;
    const Reading reading = rules_.rule(frame.node).reading;
    const bool isFold =
        reading == Reading::fold || reading == Reading::annotation || reading == Reading::attributeCopy;
    const TAVDOMElement* label = parent.isList ? findLabel(*frame.element) : nullptr;
    frame.label = label;
    std::string name(frame.element->getLocalName());
    if (parent.isList && !label && index > 0) (name += '.') += std::to_string(index + 1);
    if (label && label->getLocalName() == kLanguage) frame.text = label->getValue();
    if (isFold && !settings_.isFolding()) {
      frame.isFold = true;
      const std::string_view said = label ? label->getValue() : std::string_view();
      // Whether a value is secret is told by the name of its setting.
      if (reading == Reading::annotation)
        settings_.beginFold((name += '.') += annotationName(said), {});
      else
        settings_.beginFold(name, said);
      return;
    }
    settings_.goDown(name);
    if (label && !settings_.isFolding()) settings_.goDown(label->getValue());
    if (label && settings_.isFolding()) frame.label = nullptr;
  }

  /// What columns are to the item that are bound in this part of it.
  void takeColumns(Frame& frame, const Frame& parent, std::int32_t index) {
    const ElementRule& rule = rules_.rule(frame.node);
    if (rule.relation != RelationKind::mentions) frame.columns = rule.relation;
    if (rule.relation == RelationKind::key && frame.element->getFirstElementValue(kType) == kGranularity)
      frame.columns = RelationKind::granularity;
    // Which of several key columns it is.
    if (parent.isList && parent.element->getElementCount() > 1 &&
        frame.element->getLocalName().ends_with("Column"))
      frame.text = numbers_.emplace_back(std::to_string(index + 1));
  }

  /// A cube shows all attributes of a dimension in its model; which of them it lists is said by what it does
  /// not list.
  void noteUnlisted(const Frame& frame) {
    const auto* shown = as<TAVAliasClassifier>(details_.item(frame.item).object);
    if (!shown) return;
    const TAVDOMElement* list = frame.element->getFirstElement(kAttributes);
    if (!list || isLeaf(*list)) return details_.set(frame.item, kAttributes, "not listed");
    for (const TAVFeature& attribute : shown->features)
      if (!listed_.contains(&attribute)) details_.set(details_.itemOf(attribute), "IsListed", "false");
    listed_.clear();
  }

  void leave(const Frame& frame) {
    if (frame.isItem && rules_.rule(frame.node).kind == ObjectKind::cubeDimension) noteUnlisted(frame);
    if (frame.isFold) {
      settings_.endFold(frame.item, frame.label && !isReference(*frame.label));
    } else if (frame.isItem) {
      settings_.beginAt(frame.outerBegin);
    } else if (frame.label && !isReference(*frame.label) &&
               details_.settings().size() == frame.settingCount) {
      // It has nothing but its label, which the name of no setting says.
      settings_.goBack(frame.place);
      settings_.set(frame.item, frame.element->getLocalName(), frame.label->getValue());
    }
    settings_.goBack(frame.place);
  }

  void readAttributes(const Frame& frame) {
    for (const DomAttribute& attribute : frame.element->getAttributes()) {
      const DomName& name = *attribute.name;
      if (name.written.starts_with("xmlns")) continue;
      if (name.space == kSchemaInstance && name.local == "type") {
        if (!isLeaf(*frame.element) && !typeOf(*frame.element).empty())
          settings_.set(frame.item, "type", attribute.value);
        continue;
      }
      const ElementRule& rule = rules_.rule(rules_.child(frame.node, "@" + std::string(name.local)));
      if (rule.reading == Reading::passedOver)
        details_.passOver(rule.what);
      else
        settings_.set(frame.item, name.local, attribute.value);
    }
  }

  /// A binding to a table or column, when the element is one.
  void readBinding(const Frame& frame) {
    const TAVDOMElement* table = frame.element->getFirstElement(kTableId);
    if (!table) return;
    const std::string_view column = frame.element->getFirstElementValue(kColumnId);
    // A measure over a whole table counts its rows.
    const bool isCount = frame.columns == RelationKind::aggregated && column.empty();
    references_.add(ColumnReference{frame.item, isCount ? RelationKind::counted : frame.columns,
                                    frame.scope->view, table->getValue(), column, frame.text});
  }

  ImportRun& run_;
  Details& details_;
  IdReferences& references_;
  PartitionQueries queries_;
  SettingWriter settings_;
  IdScopes scopes_;
  const RuleTree& rules_ = RuleTree::get();
  std::deque<Frame> frames_;
  std::unordered_map<std::string_view, std::string_view> attributeNames_;  // by ID
  std::deque<std::string> numbers_;                                        // texts of relations
  std::unordered_map<ItemId, const TAVDOMElement*> originals_;             // of attributes
  std::unordered_set<const TAVModelObject*> listed_;                       // of a dimension of a cube
};

}  // namespace

void readDetails(ImportRun& run, const TAVDOMElement& database) {
  if (!run.details) return;
  IdReferences references(run);
  ElementWalk walk(run, references);
  walk.read(database);
  readViewDetails(run, database, references);
  references.resolve();
}

}  // namespace tav

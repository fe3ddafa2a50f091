// The texts that leave a lineage graph. Each goes through maskPasswords here, so that no export can forget
// it.

#include <algorithm>
#include <array>
#include <functional>
#include <unordered_map>

#include "framework/model/class_info.h"
#include "framework/model/reflection.h"
#include "framework/model/roles.h"
#include "framework/std/dotted_name.h"
#include "framework/std/mask.h"
#include "framework/types/type_names.h"
#include "lineage/lineage_graph.h"

namespace tav {
namespace {

constexpr std::array<std::string_view, TAVAggregationOperatorType::kLast + 1> kAggregations{
    "Sum", "AverageOfChildren", "Count", "Minimum", "Maximum", "", "", "Other"};

bool isDatabaseKind(NodeKind kind) noexcept {
  return kind == NodeKind::databaseTable || kind == NodeKind::databaseColumn;
}

bool isViewKind(NodeKind kind) noexcept {
  return kind >= NodeKind::viewTable && kind <= NodeKind::condition;
}

/// What is called by a text of its own rather than by a name: a statement, the ends of a relationship.
bool isTextKind(NodeKind kind) noexcept {
  switch (kind) {
    case NodeKind::relationship:
    case NodeKind::calculatedMember:
    case NodeKind::scope:
    case NodeKind::assignment:
    case NodeKind::scriptStatement:
      return true;
    default:
      return false;
  }
}

/// What people name without what it belongs to.
bool standsAlone(NodeKind kind) noexcept {
  switch (kind) {
    case NodeKind::database:
    case NodeKind::dataSource:
    case NodeKind::dataSourceView:
    case NodeKind::script:
    case NodeKind::everyMeasure:
    case NodeKind::namedSet:
    case NodeKind::calculatedCells:
    case NodeKind::action:
    case NodeKind::role:
    case NodeKind::miningStructure:
    case NodeKind::assembly:
    case NodeKind::sharedExpression:
    case NodeKind::function:
    case NodeKind::culture:
    case NodeKind::report:
      return true;
    default:
      return false;
  }
}

/// What belongs to a report, which is called by all that it stands in: pages and visuals of several reports
/// share their names.
bool isReportPart(NodeKind kind) noexcept {
  return kind == NodeKind::reportPage || kind == NodeKind::visual || kind == NodeKind::bookmark ||
         kind == NodeKind::reportMeasure || kind == NodeKind::reportDataSet;
}

/// The name of the folder of a kind: "Named Sets".
std::string titleOf(NodeKind kind) {
  std::string title(rowOf(kind).plural);
  bool begins = true;
  for (char& c : title) {
    if (begins && c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    begins = c == ' ';
  }
  return title;
}

std::string asWritten(std::string_view text) {
  return std::string(text);
}

std::string_view operationOf(const TAVFeature& feature) {
  const TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
  return map ? map->operation.view() : std::string_view();
}

/// The type that a definition tells; null where it tells none. The model then has one called "undefined", and
/// of measures that are calculated "BINARY".
const TAVType* typeOf(const TAVModelObject* object) {
  const auto* feature = as<TAVFeature>(object);
  const TAVType* type = feature ? feature->type.get() : nullptr;
  if (!type || type->getName() == kUndefinedType) return nullptr;
  return is<TAVMeasure>(*feature) && type->getName() == "BINARY" ? nullptr : type;
}

/// A query in M begins with `let`, or with a call of one of its functions, whose names have dots.
bool isM(std::string_view query) {
  const std::size_t begin = query.find_first_not_of(" \t\r\n");
  if (begin == query.npos) return false;
  query.remove_prefix(begin);
  const std::size_t word = query.find_first_of(" \t\r\n(");
  const std::string_view first = query.substr(0, word);
  return first == "let" || (word != query.npos && query[word] == '(' && first.find('.') != first.npos);
}

/// Attributes that have an accessor of their own, and those that only the import needs. Every other one is a
/// property of its object: an attribute that is new in the model is shown without a word here.
constexpr std::array<std::string_view, 18> kToldElsewhere{
    "aggregation", "dataSourceId", "description", "dimensionType", "expression",   "hidden",
    "linkedGroup", "measureGroup", "nativeId",    "nativeType",    "physicalName", "position",
    "query",       "querySources", "schemaName",  "structural",    "tableType",    "unresolved"};

bool isToldElsewhere(std::string_view attribute) {
  return std::find(kToldElsewhere.begin(), kToldElsewhere.end(), attribute) != kToldElsewhere.end();
}

std::string textOf(const Value& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  return std::holds_alternative<bool>(value) ? "true" : "";
}

/// What an open name would mean that is an ID, whose note is the tag it stands in: "MeasureGroupID" is that
/// of a measure group.
std::string noteInWords(const OpenName& name) {
  constexpr std::string_view kId = "ID";
  const std::string_view note = name.note;
  if (name.state != OpenNameState::beyond || !note.ends_with(kId) || note == kId) return std::string(note);
  std::string words;
  for (const char c : note.substr(0, note.size() - kId.size())) {
    const bool isCapital = c >= 'A' && c <= 'Z';
    if (isCapital && !words.empty()) words += ' ';
    words += static_cast<char>(isCapital ? c - 'A' + 'a' : c);
  }
  const bool takesAn = std::string_view("aeiou").find(words.front()) != std::string_view::npos;
  return std::string(takesAn ? "the ID of an " : "the ID of a ").append(words);
}

}  // namespace

std::string LineageGraph::modelName() const {
  return maskPasswords(model_.getName());
}

std::vector<LineageConnection> LineageGraph::connections() const {
  std::vector<LineageConnection> connections;
  for (const TAVStoreConnection& connection : model_.storeConnections) {
    connections.push_back({maskPasswords(connection.getName()), maskPasswords(connection.connectionString),
                           addressOf(connection)});
  }
  return connections;
}

DatabaseAddress LineageGraph::addressOf(const TAVStoreConnection& connection) const {
  DatabaseAddress address = parseDatabaseAddress(factsOf(connection));
  std::string schema = address.defaultSchema;
  map_.apply(address, schema);
  return address;
}

std::string LineageGraph::name(NodeId id) const {
  return maskPasswords(node(id).rawName);
}

std::string LineageGraph::path(NodeId id) const {
  return pathText(id, maskPasswords);
}

std::string LineageGraph::rawPath(NodeId id) const {
  return pathText(id, asWritten);
}

/// What only the details have stands below its owner, in a folder of its kind as models have them: an owner
/// may hold several kinds of one name. Levels are all that a hierarchy holds.
std::string LineageGraph::pathText(NodeId id, Show show) const {
  if (database(id)) return databasePath(id, show);
  std::vector<NodeId> steps;
  for (; id != kNoNode && (!node(id).object || node(id).kind == NodeKind::level); id = node(id).owner)
    steps.push_back(id);
  std::string text = id == kNoNode ? "" : modelPath(*node(id).object, show);
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    if (node(*step).kind != NodeKind::level) text.append("/").append(titleOf(node(*step).kind));
    text.append("/").append(show(node(*step).rawName));
  }
  return text;
}

std::string LineageGraph::modelPath(const TAVModelObject& object, Show show) {
  std::vector<const TAVObject*> steps;
  for (const TAVObject* step = &object; step && !is<TAVModel>(*step); step = step->getParent())
    steps.push_back(step);
  std::string text;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step)
    text.append("/").append(show((*step)->getName()));
  return text;
}

std::string LineageGraph::databasePath(NodeId id, Show show) const {
  const NodeId table = node(id).kind == NodeKind::databaseTable ? id : node(id).owner;
  std::string text = database(id)->server + "/" + database(id)->database;
  if (table != kNoNode) {
    if (!rawSchema(table).empty()) text.append("/").append(show(rawSchema(table)));
    text.append("/").append(show(node(table).rawName));
  }
  if (table != id) text.append("/").append(show(node(id).rawName));
  return text;
}

std::string LineageGraph::qualifiedName(NodeId id) const {
  return qualifiedText(id, maskPasswords);
}

std::string LineageGraph::rawQualifiedName(NodeId id) const {
  return qualifiedText(id, asWritten);
}

std::string LineageGraph::qualifiedText(NodeId id, Show show) const {
  const LineageNode& at = node(id);
  if (isDatabaseKind(at.kind) || isViewKind(at.kind)) return sqlName(id, show);
  if (isTextKind(at.kind)) return show(at.rawName);
  std::string text = bracketed(show(at.rawName));
  if (at.kind == NodeKind::level && node(at.owner).owner != kNoNode)
    return partText(node(at.owner).owner, bracketed(show(node(at.owner).rawName)), show) + "." + text;
  if (isMeasureKind(at.kind)) return tabular_ ? text : "[Measures]." + text;
  if (at.kind == NodeKind::kpi) return "[KPIs]." + text;
  if (isClassifierKind(at.kind) || at.kind == NodeKind::perspective) return text;
  if (at.owner == kNoNode || standsAlone(at.kind)) return text;
  if (isReportPart(at.kind)) return reportText(id, show);
  if (at.kind == NodeKind::kpiValue) return "[KPIs]." + bracketed(show(node(at.owner).rawName)) + "." + text;
  return partText(at.owner, text, show);
}

std::string LineageGraph::partText(NodeId owner, const std::string& part, Show show) const {
  const std::string name = show(node(owner).rawName);
  return tabular_ ? singleQuoted(name) + part : bracketed(name) + "." + part;
}

std::string LineageGraph::reportText(NodeId id, Show show) const {
  std::vector<NodeId> steps;
  for (; id != kNoNode && (isReportPart(node(id).kind) || node(id).kind == NodeKind::report);
       id = node(id).owner)
    steps.push_back(id);
  std::string text;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step)
    text.append(text.empty() ? "" : ".").append(bracketed(show(node(*step).rawName)));
  return text;
}

std::string LineageGraph::sqlName(NodeId id, Show show) const {
  const NodeId owner = node(id).owner;
  std::string text;
  const std::string_view schemaName = rawSchema(owner == kNoNode ? id : owner);
  if (!schemaName.empty()) appendDottedPart(text, show(schemaName));
  if (owner != kNoNode) appendDottedPart(text, show(node(owner).rawName));
  appendDottedPart(text, show(node(id).rawName));
  return text;
}

std::string LineageGraph::expression(NodeId id) const {
  return maskPasswords(rawExpression(id));
}

std::string_view LineageGraph::rawExpression(NodeId id) const {
  const TAVModelObject* object = node(id).object;
  if (!object) return node(id).item == kNoItem ? std::string_view() : details_->item(node(id).item).text;
  if (const auto* table = as<TAVTable>(object)) return table->query;
  if (const auto* condition = as<TAVCondition>(object)) return condition->expression;
  if (const auto* column = as<TAVColumn>(object); column && !column->expression.empty())
    return column->expression;
  if (const auto* measure = as<TAVMeasure>(object); measure && !measure->expression.empty())
    return measure->expression;
  const auto* feature = as<TAVFeature>(object);
  return feature ? operationOf(*feature) : std::string_view();
}

std::string_view LineageGraph::language(NodeId id) const {
  const std::string_view text = rawExpression(id);
  if (text.empty()) return {};
  if (!node(id).object) return details_->item(node(id).item).language;
  if (isViewKind(node(id).kind)) return node(id).kind == NodeKind::namedQuery && isM(text) ? "m" : "sql";
  return tabular_ ? "dax" : "mdx";
}

std::string_view LineageGraph::aggregation(NodeId id) const {
  const LineageNode& at = node(id);
  const auto* measure = as<TAVMeasure>(at.object);
  if (!measure || at.kind != NodeKind::measure) return {};
  return kAggregations[static_cast<std::size_t>(measure->aggregation.value())];
}

std::vector<std::pair<std::string, std::string>> LineageGraph::settings(NodeId id) const {
  std::vector<std::pair<std::string, std::string>> settings;
  for (const DetailSetting* setting : rawSettings(id))
    settings.emplace_back(maskPasswords(setting->name), maskProperty(setting->name, setting->value));
  return settings;
}

std::vector<const DetailSetting*> LineageGraph::rawSettings(NodeId id) const {
  std::vector<const DetailSetting*> settings;
  if (!details_) return settings;
  for (std::uint32_t i = settingOffsets_[id]; i < settingOffsets_[id + 1]; ++i)
    settings.push_back(&details_->settings()[settings_[i]]);
  return settings;
}

std::vector<OpenNameText> LineageGraph::openNames(NodeId id) const {
  std::vector<OpenNameText> names;
  if (!details_) {
    for (std::string& name : unresolved(id)) names.push_back({std::move(name), OpenNameState::mistake, {}});
    return names;
  }
  for (std::uint32_t i = openNameOffsets_[id]; i < openNameOffsets_[id + 1]; ++i) {
    const OpenName& name = details_->openNames()[openNames_[i]];
    if (isOfDatabase(name)) continue;  // it has a node
    names.push_back({maskPasswords(name.name), name.state, maskPasswords(noteInWords(name))});
  }
  return names;
}

std::string LineageGraph::edgeText(const LineageEdge& edge) const {
  return edge.relation == kNoRelation ? "" : maskPasswords(details_->relations()[edge.relation].text);
}

std::vector<std::string> LineageGraph::unresolved(NodeId id) const {
  std::vector<std::string> names;
  for (const std::string_view name : rawUnresolved(id)) names.push_back(maskPasswords(name));
  return names;
}

/// The details of a multidimensional definition know all names; a tabular model knows its own.
std::vector<std::string_view> LineageGraph::rawUnresolved(NodeId id) const {
  std::vector<std::string_view> names;
  if (details_ && !tabular_) {
    for (std::uint32_t i = openNameOffsets_[id]; i < openNameOffsets_[id + 1]; ++i) {
      const OpenName& name = details_->openNames()[openNames_[i]];
      if (name.state != OpenNameState::exists && !isOfDatabase(name)) names.push_back(name.name);
    }
  } else if (node(id).object) {
    names = unresolvedNamesOf(*node(id).object);
  }
  return names;
}

std::string LineageGraph::description(NodeId id) const {
  return node(id).object ? maskPasswords(node(id).object->description) : std::string();
}

std::string LineageGraph::typeName(NodeId id) const {
  const TAVType* type = typeOf(node(id).object);
  return type ? maskPasswords(type->getName()) : std::string();
}

std::string LineageGraph::dataType(NodeId id) const {
  const TAVType* type = typeOf(node(id).object);
  if (const auto* derived = as<TAVDerivedType>(type)) return maskPasswords(derived->dataType);
  const auto* base = as<TAVBaseType>(type);
  return base ? maskPasswords(base->dataType) : std::string();
}

std::string LineageGraph::packageName(NodeId id) const {
  const auto* classifier = as<TAVClassifier>(node(id).object);
  const TAVNamespace* package = classifier ? classifier->nameSpace.get() : nullptr;
  return package ? maskPasswords(package->getName()) : std::string();
}

std::vector<std::pair<std::string, std::string>> LineageGraph::properties(NodeId id) const {
  std::vector<std::pair<std::string, std::string>> properties;
  const TAVModelObject* object = node(id).object;
  if (!object) return properties;
  for (const AttributeRow* row : classInfo(object->classId()).attributes) {
    const Value value = row->get(*object);
    if (isDefault(value) || isToldElsewhere(row->name)) continue;
    properties.emplace_back(row->name, maskPasswords(textOf(value)));
  }
  for (const TAVPropertyValue& property : object->propertyValues) {
    const TAVPropertyType* type = property.propertyType.get();
    const std::string_view name = type ? type->getName() : property.getName();
    properties.emplace_back(maskPasswords(name), maskProperty(name, property.value));
  }
  return properties;
}

std::vector<LineageHierarchy> LineageGraph::hierarchies(NodeId id) const {
  const auto* dimension = as<TAVDimension>(node(id).object);
  if (!dimension || dimension->hierarchies.empty()) return {};
  std::unordered_map<const TAVObject*, NodeId> attributes{{nullptr, kNoNode}};
  for (const NodeId part : partsOf(id)) attributes.emplace(node(part).object, part);
  std::vector<LineageHierarchy> shown;
  for (const TAVHierarchy& hierarchy : dimension->hierarchies) {
    LineageHierarchy& one = shown.emplace_back(LineageHierarchy{maskPasswords(hierarchy.getName()), {}});
    for (const TAVHierarchyLevelAssociation& use : hierarchy.hierarchyLevelAssociations) {
      const TAVLevel* level = use.level.get();
      if (!level) continue;
      const auto attribute = attributes.find(keyAttributeOf(*level));
      one.levels.push_back(
          {maskPasswords(level->getName()), attribute == attributes.end() ? kNoNode : attribute->second});
    }
  }
  return shown;
}

std::vector<std::string> LineageGraph::notes() const {
  std::vector<std::string> notes;
  if (!details_) {
    notes.emplace_back(
        "the document has no details: keys, joins, roles, scripts and whatever else its model leaves out are "
        "not known");
    return notes;
  }
  for (std::size_t i = 0; i < kPassedOverCount; ++i) {
    const auto what = static_cast<PassedOver>(i);
    const std::size_t count = details_->passedOver(what);
    if (count == 0 || !rowOf(what).hasMeaning) continue;
    notes.push_back("not looked at: " + std::string(rowOf(what).words) + " (" + std::to_string(count) + ")");
  }
  return notes;
}

}  // namespace tav

#include "expressions/script_details.h"

#include <algorithm>
#include <array>
#include <memory>

#include "bridge/catalogue/literals.h"
#include "expressions/dax_names.h"
#include "expressions/named_relations.h"
#include "expressions/script_statements.h"
#include "framework/model/roles.h"
#include "framework/std/dotted_name.h"
#include "framework/std/empty_table.h"
#include "framework/std/text.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

constexpr std::string_view kMdx = "mdx";
constexpr std::string_view kDax = "dax";
constexpr std::size_t kLongestLabel = 80;  // bytes of the text that names a statement

struct PropertyRow {
  std::string_view name;
  RelationKind relation;
};
// What the names in a property's expression do. Sorted; those of other properties are mentioned.
constexpr std::array kProperties{PropertyRow{"back_color", RelationKind::colours},
                                 PropertyRow{"caption", RelationKind::caption},
                                 PropertyRow{"condition", RelationKind::filters},
                                 PropertyRow{"default_member", RelationKind::filters},
                                 PropertyRow{"font_flags", RelationKind::formats},
                                 PropertyRow{"font_name", RelationKind::formats},
                                 PropertyRow{"font_size", RelationKind::formats},
                                 PropertyRow{"fore_color", RelationKind::colours},
                                 PropertyRow{"format", RelationKind::formats},
                                 PropertyRow{"format_string", RelationKind::formats},
                                 PropertyRow{"goal", RelationKind::computed},
                                 PropertyRow{"language", RelationKind::formats},
                                 PropertyRow{"non_empty_behavior", RelationKind::nonEmpty},
                                 PropertyRow{"status", RelationKind::computed},
                                 PropertyRow{"trend", RelationKind::computed},
                                 PropertyRow{"weight", RelationKind::weighs}};

RelationKind relationOf(std::string_view property) {
  const std::string folded = foldedName(unquotedPart(property));
  const auto* row = std::lower_bound(kProperties.begin(), kProperties.end(), folded,
                                     [](const PropertyRow& a, std::string_view b) { return a.name < b; });
  return row != kProperties.end() && row->name == folded ? row->relation : RelationKind::mentions;
}

/// The text of a string alone; anything else as it is.
std::string plainValue(std::string_view value) {
  if (value.size() < 2 || (value.front() != '"' && value.front() != '\'')) return std::string(value);
  std::size_t end = value.find(value.front(), 1);
  while (end != value.npos && value.substr(end + 1, 1) == value.substr(0, 1))
    end = value.find(value.front(), end + 2);
  return end + 1 == value.size() ? unquotedPart(value) : std::string(value);
}

/// The measure in `'Table'[Measure]`.
std::string daxMeasureName(const ScriptStatement& statement) {
  const std::string_view name = statement.name;
  return unquotedPart(name.substr(std::min(name.rfind('['), name.size())));
}

/// The table in it.
std::string daxTableName(const ScriptStatement& statement) {
  const std::vector<DaxName> names = daxNamesIn(statement.name);
  return names.empty() ? std::string() : names.back().table;
}

/// The beginning of a text on one line.
std::string labelOf(std::string_view text) {
  std::string label;
  for (const char c : beginningOf(text, kLongestLabel)) {
    const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
    if (!blank)
      label += c;
    else if (!label.empty() && label.back() != ' ')
      label += ' ';
  }
  return label;
}

/// "SET CURRENTCUBE.[a], b": what a DROP names, without the words for its kind.
std::vector<std::string_view> droppedNames(std::string_view list) {
  constexpr std::array<std::string_view, 3> kMoreFollows{"calculated", "cell", "session"};
  for (bool isLast = false; !isLast;) {
    const std::size_t end = list.find_first_of(" \t\r\n");
    if (end == list.npos) return {};
    isLast = std::find(kMoreFollows.begin(), kMoreFollows.end(), foldedName(list.substr(0, end))) ==
             kMoreFollows.end();
    list = trimmed(list.substr(end));
  }
  std::vector<std::string_view> names;
  bool isInside = false;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (list[i] == '[') isInside = true;
    if (list[i] == ']' && list.substr(i + 1, 1) != "]") isInside = false;
    if (list[i] == ']' && list.substr(i + 1, 1) == "]") ++i;
    if (isInside || list[i] != ',') continue;
    names.push_back(trimmed(list.substr(begin, i - begin)));
    begin = i + 1;
  }
  names.push_back(trimmed(list.substr(begin)));
  return names;
}

/// What a script has to say to the user, in the order of its lines.
class ScriptFaults {
 public:
  void add(std::size_t offset, std::string_view expected) { faults_.push_back({offset, expected}); }

  /// One warning each. Lines are counted once, from the front.
  void log(TAVLog& log, std::string_view script, const std::string& name) {
    std::stable_sort(faults_.begin(), faults_.end(),
                     [](const auto& a, const auto& b) { return a.offset < b.offset; });
    std::size_t line = 1;
    std::size_t lineBegin = 0;
    for (const ExpressionFault& fault : faults_) {
      const std::size_t offset = std::min(fault.offset, script.size());
      for (std::size_t end = script.find('\n', lineBegin); end < offset; end = script.find('\n', lineBegin)) {
        lineBegin = end + 1;
        ++line;
      }
      const std::string place = placeInText(script.substr(lineBegin), offset - lineBegin).str();
      const std::size_t column = place.find(',');
      QVT_SSXMLA::MICROSOFT_XMLA_STATEMENT_NOT_READ.log(log, name,
                                                        "line " + std::to_string(line) +
                                                            place.substr(column) + ": expected " +
                                                            std::string(fault.expected));
    }
  }

 private:
  std::vector<ExpressionFault> faults_;
};

/// The items of what a cube's scripts define, as far as something is said of it beside them.
class KnownCalculations {
 public:
  explicit KnownCalculations(const Details& details) {
    const auto items = details.items();
    for (ItemId item = 0; item < items.size(); ++item)
      if (!items[item].object && isCalculation(items[item].kind))
        items_.emplace(keyOf(items[item].owner, items[item].kind, items[item].name), item);
  }

  /// The item of that name, once; kNoItem when there is none.
  ItemId take(ItemId cube, ObjectKind kind, std::string_view name) {
    const auto found = items_.find(keyOf(cube, kind, name));
    if (found == items_.end()) return kNoItem;
    const ItemId item = found->second;
    items_.erase(found);
    return item;
  }

 private:
  static bool isCalculation(ObjectKind kind) {
    return kind == ObjectKind::namedSet || kind == ObjectKind::calculatedMember ||
           kind == ObjectKind::calculatedCells;
  }
  static std::string keyOf(ItemId cube, ObjectKind kind, std::string_view name) {
    const std::string place = std::to_string(cube) + "/" + std::to_string(static_cast<int>(kind)) + "/";
    if (kind != ObjectKind::calculatedMember) return place + foldedName(unquotedPart(name));
    std::string key = place;
    for (const ReferencePart& part : partsOfReference(name)) key.append(part.folded).push_back('\0');
    return key;
  }

  std::unordered_map<std::string, ItemId> items_;
};

/// The script of one cube.
class ScriptDetails {
 public:
  ScriptDetails(ImportRun& run, const TAVCube& cube, CubeNames& names, KnownCalculations& known)
      : run_(run),
        details_(*run.details),
        cube_(cube),
        names_(names),
        known_(known),
        cubeItem_(details_.itemOf(cube)) {}

  /// `scriptItem`: the item of the script, if it has one already.
  void addScript(const CubeTexts::Script& script, ItemId scriptItem);
  void addCommand(std::string_view text);
  /// The expressions of the model's measures that no statement has given.
  void addMeasures();
  void relate(const NamingExpression& expression) { relateNames(details_, names_, expression); }

 private:
  struct Scope {
    ItemId item = kNoItem;
    std::vector<const TAVModelObject*> measures;
    std::optional<RelationKind> relation;  // of what is assigned in it
  };

  static void use(Scope& scope, RelationKind relation) {
    if (!scope.relation || relation == RelationKind::assigns) scope.relation = relation;
  }
  void makeItems(const std::vector<ScriptStatement>& statements);
  ItemId makeItem(const ScriptStatement& statement, ItemId owner);
  ItemId makeMember(const ScriptStatement& statement);
  ItemId makeDaxMeasure(const ScriptStatement& statement);
  void describe(const ScriptStatement& statement, std::size_t place);
  /// The item of what a statement defines.
  ItemId makeCalculation(ObjectKind kind, std::string_view name, std::string_view text,
                         std::string_view language);
  void define(const ScriptStatement& statement, ItemId item, CubeNames::Moment moment);
  void drop(const ScriptStatement& statement, ItemId item);
  void addProperties(const ScriptStatement& statement, ItemId item);
  void addRange(const ScriptStatement& statement, std::size_t place);
  void addAssignment(const ScriptStatement& statement, std::size_t place);
  void linkScopes(const std::vector<ScriptStatement>& statements);
  void relateText(std::string_view text, ItemId item, RelationKind relation,
                  std::vector<const TAVModelObject*>* range = nullptr, bool isQuery = false);
  ItemId everyMeasure();

  ImportRun& run_;
  Details& details_;
  const TAVCube& cube_;
  CubeNames& names_;
  KnownCalculations& known_;
  ItemId cubeItem_;
  ItemId script_ = kNoItem;
  ItemId everyMeasure_ = kNoItem;
  std::string_view text_;  // of the command at hand
  ScriptFaults* faults_ = nullptr;
  std::vector<ItemId> items_;                        // by statement
  std::vector<const TAVFeature*> features_;          // by statement: the measure of the model that it creates
  std::unordered_map<std::uint32_t, Scope> scopes_;  // by statement
  std::unordered_set<const TAVFeature*> given_;      // measures with an expression from a statement
};

void ScriptDetails::addScript(const CubeTexts::Script& script, ItemId scriptItem) {
  if (!script.commands) return;
  std::string whole;
  for (const std::string_view command : *script.commands)
    whole.append(whole.empty() ? "" : "\n").append(command);
  script_ = scriptItem == kNoItem ? details_.add(ObjectKind::script, cubeItem_, script.name) : scriptItem;
  details_.setText(script_, whole, kMdx);
  for (const std::string_view command : *script.commands) addCommand(command);
}

void ScriptDetails::addCommand(std::string_view text) {
  text_ = text;
  ScriptFaults faults;
  faults_ = &faults;
  const std::vector<ScriptStatement> statements = parseScript(text);
  // All items first: an expression may name what stands behind it.
  makeItems(statements);
  for (std::size_t i = 0; i < statements.size(); ++i) describe(statements[i], i);
  linkScopes(statements);
  faults.log(*run_.log, text, cube_.getName().str());
  faults_ = nullptr;
}

void ScriptDetails::makeItems(const std::vector<ScriptStatement>& statements) {
  items_.assign(statements.size(), kNoItem);
  features_.assign(statements.size(), nullptr);
  emptyTable(scopes_);
  for (std::size_t i = 0; i < statements.size(); ++i) {
    const ScriptStatement& statement = statements[i];
    if (statement.fault) faults_->add(statement.fault.offset, statement.fault.expected);
    const bool inScope = statement.scope != ScriptStatement::kNoScope;
    const ItemId owner = inScope ? scopes_[statement.scope].item : script_;
    if (statement.kind == StatementKind::member && !statement.name.empty()) {
      std::vector<ReferencePart> parts = partsOfReference(statement.name);
      names_.leaveOutCube(parts);
      if (parts.size() == 2 && parts.front().folded == "measures")
        features_[i] = names_.findCalculated(parts.back().name);
    }
    items_[i] = features_[i] ? details_.itemOf(*features_[i]) : makeItem(statement, owner);
    if (statement.kind == StatementKind::scope)
      scopes_[static_cast<std::uint32_t>(i)] = {items_[i], {}, std::nullopt};
    if (items_[i] != kNoItem) define(statement, items_[i], CubeNames::Moment::ahead);
  }
}

ItemId ScriptDetails::makeItem(const ScriptStatement& statement, ItemId owner) {
  switch (statement.kind) {
    case StatementKind::member:
      return makeMember(statement);
    case StatementKind::measure:
      return makeDaxMeasure(statement);
    case StatementKind::set: {
      std::vector<ReferencePart> parts = partsOfReference(statement.name);
      names_.leaveOutCube(parts);
      const std::string_view name = parts.empty() ? std::string_view() : std::string_view(parts.back().name);
      return makeCalculation(ObjectKind::namedSet, name, statement.expression, kMdx);
    }
    case StatementKind::cells:
      return makeCalculation(ObjectKind::calculatedCells, statement.name, statement.text, kMdx);
    case StatementKind::action:
      return details_.add(ObjectKind::action, cubeItem_, statement.name, statement.expression, kMdx);
    case StatementKind::scope:
      return details_.add(ObjectKind::scope, owner, labelOf(statement.range), statement.text, kMdx);
    case StatementKind::endScope:
      return kNoItem;
    case StatementKind::assignment: {
      const std::string_view label = statement.property.empty() ? statement.range : statement.text;
      return details_.add(ObjectKind::assignment, owner, labelOf(label), statement.text, kMdx);
    }
    default: {
      std::string label(statementWords(statement.kind));
      if (statement.kind == StatementKind::unknown) label = labelOf(statement.text);
      if (!statement.name.empty()) label.append(" ").append(labelOf(statement.name));
      return details_.add(ObjectKind::scriptStatement, owner, label, statement.text, kMdx);
    }
  }
}

ItemId ScriptDetails::makeCalculation(ObjectKind kind, std::string_view name, std::string_view text,
                                      std::string_view language) {
  const ItemId known = known_.take(cubeItem_, kind, name);
  if (known == kNoItem) return details_.add(kind, cubeItem_, name, text, language);
  details_.setText(known, text, language);
  return known;
}

ItemId ScriptDetails::makeMember(const ScriptStatement& statement) {
  std::vector<ReferencePart> parts = partsOfReference(statement.name);
  names_.leaveOutCube(parts);
  std::string name;
  for (const ReferencePart& part : parts)
    name.append(name.empty() ? "" : ".").append(part.isKey ? part.name : bracketed(part.name));
  const ItemId item = makeCalculation(ObjectKind::calculatedMember, name, statement.expression, kMdx);
  if (!parts.empty() && parts.front().folded == "measures" && !statement.fault)
    QVT_SSXMLA::MICROSOFT_XMLA_NO_SUCH_MEASURE.log(*run_.log, parts.back().name, cube_.getPath(true));
  return item;
}

ItemId ScriptDetails::makeDaxMeasure(const ScriptStatement& statement) {
  const std::string name = daxMeasureName(statement);
  if (!statement.fault) QVT_SSXMLA::MICROSOFT_XMLA_NO_SUCH_MEASURE.log(*run_.log, name, cube_.getPath(true));
  const ItemId known = known_.take(cubeItem_, ObjectKind::calculatedMember, bracketed(name));
  if (known == kNoItem)
    return details_.add(ObjectKind::calculatedMember, cubeItem_, name, statement.expression, kDax);
  details_.setText(known, statement.expression, kDax);
  return known;
}

void ScriptDetails::define(const ScriptStatement& statement, ItemId item, CubeNames::Moment moment) {
  const bool isSet = statement.kind == StatementKind::set;
  const bool isMember = statement.kind == StatementKind::member && !details_.item(item).object;
  if (isSet || isMember || statement.kind == StatementKind::kpi)
    names_.define(statement.name, item, isSet, moment);
  // MDX calls a DAX measure as it calls any other.
  if (statement.kind == StatementKind::measure && !statement.fault)
    names_.define("[Measures]." + bracketed(daxMeasureName(statement)), item, false, moment);
}

/// A measure that the model has is dropped for nobody: the model has it.
void ScriptDetails::drop(const ScriptStatement& statement, ItemId item) {
  for (const std::string_view name : droppedNames(statement.name)) {
    relateText(name, item, RelationKind::mentions);
    names_.drop(name);
  }
}

void ScriptDetails::relateText(std::string_view text, ItemId item, RelationKind relation,
                               std::vector<const TAVModelObject*>* range, bool isQuery) {
  if (text.empty()) return;
  const ExpressionFault fault =
      relateNames(details_, names_, {text, item, relation, nullptr, range, isQuery});
  if (fault && faults_)
    faults_->add(static_cast<std::size_t>(text.data() - text_.data()) + fault.offset, fault.expected);
}

void ScriptDetails::describe(const ScriptStatement& statement, std::size_t place) {
  const ItemId item = items_[place];
  if (item == kNoItem) return;
  define(statement, item, CubeNames::Moment::now);
  if (statement.hidden) details_.set(item, "HIDDEN", "true");
  if (statement.dynamic) details_.set(item, "DYNAMIC", "true");
  switch (statement.kind) {
    case StatementKind::member:
      if (!features_[place]) {
        relateText(statement.expression, item, RelationKind::computed);
      } else if (given_.insert(features_[place]).second) {
        // The model's own reading has told of faults in it.
        relate({statement.expression, item, RelationKind::computed, features_[place]});
      }
      break;
    case StatementKind::set:
    case StatementKind::kpi:
      relateText(statement.expression, item, RelationKind::computed);
      break;
    case StatementKind::measure:
      relateDaxNames(details_, names_, {statement.expression, item, RelationKind::computed},
                     daxTableName(statement));
      break;
    case StatementKind::action:
      relateText(statement.range, item, RelationKind::offered);
      relateText(statement.expression, item, RelationKind::mentions);
      break;
    case StatementKind::scope:
    case StatementKind::cells:
    case StatementKind::assignment:
    case StatementKind::freeze:
      addRange(statement, place);
      break;
    case StatementKind::subcube:
    case StatementKind::alter:
    case StatementKind::update:
      relateText(statement.expression, item, RelationKind::mentions, nullptr,
                 statement.kind == StatementKind::subcube);
      break;
    case StatementKind::drop:
      drop(statement, item);
      break;
    default:
      break;
  }
  addProperties(statement, item);
}

void ScriptDetails::addProperties(const ScriptStatement& statement, ItemId item) {
  for (const StatementProperty& property : statement.properties) {
    const std::string value = plainValue(property.value);
    details_.set(item, unquotedPart(property.name), value);
    const RelationKind relation = relationOf(property.name);
    if (foldedName(property.name) == "associated_measure_group") {
      if (const TAVModelObject* group = names_.findMeasureGroup(value))
        details_.relate(RelationKind::associated, details_.itemOf(*group), item);
    } else if (isExpression(property.value)) {
      relateText(property.value, item, relation);
    } else if (relation == RelationKind::nonEmpty && value != property.value) {
      relate({value, item, relation});  // names in quotes
    }
  }
}

/// Measures that the range names get what the statement gives; everything else that it names decides about
/// them.
void ScriptDetails::addRange(const ScriptStatement& statement, std::size_t place) {
  if (statement.kind == StatementKind::assignment) return addAssignment(statement, place);
  const ItemId item = items_[place];
  std::vector<const TAVModelObject*> measures;
  if (statement.kind == StatementKind::freeze)
    return relateText(statement.range, item, RelationKind::mentions);
  relateText(statement.range, item, RelationKind::assigns, &measures);
  if (statement.kind == StatementKind::scope) {
    scopes_[static_cast<std::uint32_t>(place)].measures = std::move(measures);
    return;
  }
  relateText(statement.expression, item, RelationKind::assigns);
  for (const TAVModelObject* measure : measures)
    details_.relate(RelationKind::assigns, item, details_.itemOf(*measure));
  if (measures.empty()) details_.relate(RelationKind::assigns, item, everyMeasure());
}

void ScriptDetails::addAssignment(const ScriptStatement& statement, std::size_t place) {
  const ItemId item = items_[place];
  const RelationKind relation =
      statement.property.empty() ? RelationKind::assigns : relationOf(statement.property);
  std::vector<const TAVModelObject*> measures;
  relateText(statement.range, item, relation, &measures);
  relateText(statement.condition, item, relation);
  relateText(statement.expression, item, relation);
  const bool inScope = statement.scope != ScriptStatement::kNoScope;
  if (!measures.empty()) {
    for (const TAVModelObject* measure : measures) details_.relate(relation, item, details_.itemOf(*measure));
    if (inScope) details_.relate(relation, scopes_[statement.scope].item, item);
  } else if (inScope) {
    // A scope stands for all measures that it names: one relation for each statement, not for each of both.
    details_.relate(relation, item, scopes_[statement.scope].item);
    use(scopes_[statement.scope], relation);
  } else {
    details_.relate(relation, item, everyMeasure());
  }
}

/// Lets the scopes that something is assigned in reach their measures: their own, or those of the scope
/// around them. Where only properties are assigned, they do no more.
void ScriptDetails::linkScopes(const std::vector<ScriptStatement>& statements) {
  // Backwards, as a scope hands on to the one around it what it has no measures for.
  for (std::size_t place = statements.size(); place-- > 0;) {
    const auto found = scopes_.find(static_cast<std::uint32_t>(place));
    if (found == scopes_.end() || !found->second.relation) continue;
    const Scope& scope = found->second;
    const bool outermost = statements[place].scope == ScriptStatement::kNoScope;
    for (const TAVModelObject* measure : scope.measures)
      details_.relate(*scope.relation, scope.item, details_.itemOf(*measure));
    if (!scope.measures.empty()) {
      if (!outermost) details_.relate(*scope.relation, scopes_[statements[place].scope].item, scope.item);
    } else if (outermost) {
      details_.relate(*scope.relation, scope.item, everyMeasure());
    } else {
      Scope& outer = scopes_[statements[place].scope];
      details_.relate(*scope.relation, scope.item, outer.item);
      use(outer, *scope.relation);
    }
  }
}

/// What stands for all measures of the cube.
ItemId ScriptDetails::everyMeasure() {
  if (everyMeasure_ != kNoItem) return everyMeasure_;
  everyMeasure_ = details_.add(ObjectKind::everyMeasure, cubeItem_, "Measures");
  for (const TAVFeature* measure : names_.measures())
    details_.relate(RelationKind::applied, everyMeasure_, details_.itemOf(*measure));
  return everyMeasure_;
}

void ScriptDetails::addMeasures() {
  for (const auto* features : {&names_.measures(), &names_.kpiValues()}) {
    for (const TAVFeature* feature : *features) {
      const auto* measure = as<TAVMeasure>(feature);
      if (!measure || measure->expression.empty() || given_.contains(feature)) continue;
      const ItemId item = details_.itemOf(*measure);
      relate({measure->expression.view(), item, RelationKind::computed, measure});
    }
  }
}

/// The items that scripts have already, each for one script.
class KnownScripts {
 public:
  explicit KnownScripts(const Details& details) {
    const auto items = details.items();
    for (ItemId item = 0; item < items.size(); ++item)
      if (!items[item].object && items[item].kind == ObjectKind::script)
        scripts_.emplace(keyOf(items[item].owner, items[item].name), item);
  }

  ItemId take(const Details& details, const TAVCube& cube, std::string_view name) {
    const auto found = scripts_.find(keyOf(details.find(cube), name));
    if (found == scripts_.end()) return kNoItem;
    const ItemId item = found->second;
    scripts_.erase(found);
    return item;
  }

 private:
  static std::string keyOf(ItemId cube, std::string_view name) {
    return std::to_string(cube).append("/").append(name);
  }

  std::unordered_map<std::string, ItemId> scripts_;
};

/// The measures that only the details have, by their names in the groups of a cube.
class KnownMeasures {
 public:
  explicit KnownMeasures(const Details& details) {
    const auto items = details.items();
    for (ItemId item = 0; item < items.size(); ++item) {
      const DetailItem& measure = items[item];
      if (measure.object || measure.kind != ObjectKind::measure || measure.owner == kNoItem) continue;
      const DetailItem& group = items[measure.owner];
      if (!group.object) measures_.emplace(keyOf(group.owner, group.name, measure.name), item);
    }
  }

  [[nodiscard]] ItemId find(ItemId cube, std::string_view group, std::string_view name) const {
    const auto found = measures_.find(keyOf(cube, group, name));
    return found == measures_.end() ? kNoItem : found->second;
  }

 private:
  static std::string keyOf(ItemId cube, std::string_view group, std::string_view name) {
    return std::to_string(cube).append("/").append(group).append(1, '\0').append(name);
  }

  std::unordered_map<std::string, ItemId> measures_;
};

/// The measures that a cube takes from groups which the definition does not have.
void defineBeyond(const CubeTexts& cube, ItemId cubeItem, const KnownMeasures& known, CubeNames& names) {
  for (const auto& [group, name] : cube.linkedMeasures)
    if (!names.findMeasureGroup(group))
      names.defineBeyond(name, known.find(cubeItem, group, name), "a measure of a linked measure group");
}

void addScripts(const TAVDOMElement& cube, std::vector<CubeTexts::Script>& scripts) {
  const TAVDOMElement* list = cube.getFirstElement(kMdxScripts);
  if (!list) return;
  for (const TAVDOMElement& script : list->getElements()) {
    CubeTexts::Script& read = scripts.emplace_back();
    read.name = script.getFirstElementValue(kName);
    const TAVDOMElement* commands = script.getFirstElement(kCommands);
    if (!commands) continue;
    read.commands.emplace();
    for (const TAVDOMElement& command : commands->getElements())
      if (command.getTagName() == kCommand) read.commands->push_back(command.getFirstElementValue(kText));
  }
}

void addLinkedMeasures(const TAVDOMElement& cube, std::vector<CubeTexts::LinkedMeasure>& linked) {
  const TAVDOMElement* groups = cube.getFirstElement(kMeasureGroups);
  if (!groups) return;
  for (const TAVDOMElement& group : groups->getElements()) {
    const TAVDOMElement* measures = group.getFirstElement(kMeasures);
    if (!group.getFirstElement(kSource) || !measures) continue;
    for (const TAVDOMElement& measure : measures->getElements())
      linked.push_back({group.getFirstElementValue(kName), measure.getFirstElementValue(kName)});
  }
}

}  // namespace

CubeTexts textsOf(const CubeElement& read) {
  CubeTexts texts{read.cube, {}, {}};
  addScripts(*read.element, texts.scripts);
  addLinkedMeasures(*read.element, texts.linkedMeasures);
  return texts;
}

void importExpressionDetails(ImportRun& run, const std::vector<CubeTexts>& cubes, ModelNames& names) {
  KnownScripts known(*run.details);
  KnownCalculations calculations(*run.details);
  const KnownMeasures measures(*run.details);
  DimensionNames dimensions;
  std::unordered_map<const TAVClassifier*, std::unique_ptr<CubeNames>> scopes;
  for (const CubeTexts& texts : cubes) {
    const TAVCube& cube = *texts.cube;
    auto& cubeNames = scopes[&cube] = std::make_unique<CubeNames>(cube, names, dimensions);
    defineBeyond(texts, run.details->find(cube), measures, *cubeNames);
    ScriptDetails details(run, cube, *cubeNames, calculations);
    for (const CubeTexts::Script& script : texts.scripts)
      details.addScript(script, known.take(*run.details, cube, script.name));
    details.addMeasures();
  }
  for (const OpenExpression& open : run.expressions) {
    const TAVClassifier* owner = open.cube ? static_cast<const TAVClassifier*>(open.cube) : open.dimension;
    if (!owner) continue;
    auto& found = scopes[owner];
    if (!found && open.cube) found = std::make_unique<CubeNames>(*open.cube, names, dimensions);
    if (!found) found = std::make_unique<CubeNames>(*open.dimension, names, dimensions);
    relateNames(*run.details, *found, {open.text, open.item, open.relation});
  }
}

}  // namespace tav

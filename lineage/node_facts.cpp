#include "lineage/node_facts.h"

#include <algorithm>
#include <map>

#include "framework/details/setting_words.h"
#include "framework/expression/layout.h"
#include "framework/model/reflection.h"
#include "framework/model/roles.h"
#include "framework/std/mask.h"

namespace tav {
namespace {

/// Attributes that are compared elsewhere, as expressions, relations, names or order, or follow from those.
constexpr std::array<std::string_view, 9> kToldElsewhere{"aggregation", "expression",   "modificationTime",
                                                         "nativeId",    "operation",    "position",
                                                         "query",       "querySources", "unresolved"};
/// Properties that the lineage of an expression was made from.
constexpr std::array<std::string_view, 2> kMadeFromExpression{label::kSourceTables, label::kCountedTables};

template <class List> bool isOneOf(const List& list, std::string_view name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

std::string textOf(const AttributeRow& row, const Value& value) {
  if (row.name == "dimensionType") {
    constexpr std::array<std::string_view, TAVDimensionType::kLast + 1> kTypes{"measures", "time", "regular"};
    return std::string(kTypes[static_cast<std::size_t>(std::get<std::int64_t>(value))]);
  }
  if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* store = std::get_if<TAVDataStore>(&value)) return std::string(store->name);
  return std::get<bool>(value) ? "yes" : "no";
}

/// What is said under one name, in the order of the definition: a name may stand twice.
struct Fact {
  std::vector<std::string> raw;
  std::vector<std::string> shown;
};
using Facts = std::map<std::string, Fact>;

/// Whether two texts differ as far as can be known: a document in which passwords are masked does not tell
/// whether they are still the same.
template <class Text>
bool differs(const Text& was, const Text& is, const Text& shownWas, const Text& shownIs) {
  if (was == is) return false;
  return shownWas != shownIs || (was != shownWas && is != shownIs);
}

class FactReader {
 public:
  FactReader(const LineageGraph& graph, NodeId id) : graph_(graph), id_(id) {}

  Facts read() {
    const LineageNode& node = graph_.node(id_);
    if (node.object) addObject(*node.object);
    // A level of a hierarchy may be shared by several; what is said of it is said of each.
    if (const auto* use = as<TAVHierarchyLevelAssociation>(node.object); use && use->level)
      addObject(*use->level);
    if (const std::string_view how = graph_.aggregation(id_); !how.empty())
      add("aggregation", std::string(how), std::string(how));
    addSettings();
    return std::move(facts_);
  }

 private:
  void addObject(const TAVElement& element) {
    for (const AttributeRow* row : classInfo(element.classId()).attributes) {
      const Value value = row->get(element);
      if (isOneOf(kToldElsewhere, row->name) || isDefault(value)) continue;
      const std::string text = textOf(*row, value);
      add(settingWords(row->name), text, maskPasswords(text));
    }
    for (const TAVPropertyValue& property : element.propertyValues) {
      const TAVPropertyType* type = property.propertyType.get();
      const std::string_view name = type ? type->getName() : property.getName();
      if (!isOneOf(kMadeFromExpression, name))
        add("property " + settingWords(maskPasswords(name)), std::string(property.value),
            maskProperty(name, property.value));
    }
    const auto* feature = as<TAVFeature>(&element);
    if (!feature || !feature->type) return;
    const std::string_view type = feature->type->getName();
    add("data type", std::string(type), maskPasswords(type));
  }

  void addSettings() {
    for (const DetailSetting* setting : graph_.rawSettings(id_))
      add("setting " + settingWords(maskPasswords(setting->name)), std::string(setting->value),
          maskProperty(setting->name, setting->value));
  }

  void add(std::string name, std::string raw, std::string shown) {
    Fact& fact = facts_[std::move(name)];
    fact.raw.push_back(std::move(raw));
    fact.shown.push_back(std::move(shown));
  }

  const LineageGraph& graph_;
  NodeId id_;
  Facts facts_;
};

/// Keys tell apart where a fact stands; people need not know.
std::string wordsOf(std::string_view key) {
  for (const std::string_view prefix : {"property ", "setting "})
    if (key.starts_with(prefix)) return std::string(key.substr(prefix.size()));
  return std::string(key);
}

std::string joined(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) text.append(text.empty() ? "" : ", ").append(value);
  return text;
}

Change changeOf(std::string_view key, const Fact* before, const Fact* after) {
  Change change;
  change.what = wordsOf(key);
  if (before) change.before = joined(before->shown);
  if (after) change.after = joined(after->shown);
  change.hidden = before && after && change.before == change.after;
  return change;
}

using Open = std::map<std::string, OpenNameText>;

Open openNamesOf(const LineageGraph& graph, NodeId id) {
  Open open;
  if (id == kNoNode) return open;
  for (OpenNameText& name : graph.openNames(id)) {
    std::string key = name.name;
    open.emplace(std::move(key), std::move(name));
  }
  for (const std::string& name : graph.unresolved(id))
    open.emplace(name, OpenNameText{name, OpenNameState::mistake, ""});
  return open;
}

std::string_view stateWords(OpenNameState state) {
  switch (state) {
    case OpenNameState::exists:
      return "names what is no attribute or measure";
    case OpenNameState::beyond:
      return "names what is beyond this definition";
    default:
      return "names what does not exist";
  }
}

std::string shownName(const OpenNameText& name) {
  return name.note.empty() ? name.name : name.name + " (" + name.note + ")";
}

Change nameChange(const OpenNameText* before, const OpenNameText* after) {
  Change change;
  change.about = Change::About::name;
  change.what = stateWords((after ? after : before)->state);
  if (before) change.before = shownName(*before);
  if (after) change.after = shownName(*after);
  if (before && after && before->state != after->state)
    change.before = std::string(stateWords(before->state)) + ": " + *change.before;
  return change;
}

}  // namespace

std::vector<Change> compareFacts(const LineageGraph& before, NodeId old, const LineageGraph& after,
                                 NodeId now) {
  const Facts oldFacts = FactReader(before, old).read();
  const Facts newFacts = FactReader(after, now).read();
  std::vector<Change> changes;
  const auto add = [&](const std::string& key, const Fact* was, const Fact* is) {
    Change change = changeOf(key, was, is);
    // What a model says too stands in the details of some definitions once more.
    if (std::find(changes.begin(), changes.end(), change) == changes.end())
      changes.push_back(std::move(change));
  };
  auto next = newFacts.begin();
  for (const auto& [key, fact] : oldFacts) {
    for (; next != newFacts.end() && next->first < key; ++next) add(next->first, nullptr, &next->second);
    const bool both = next != newFacts.end() && next->first == key;
    if (!both)
      add(key, &fact, nullptr);
    else if (differs(fact.raw, next->second.raw, fact.shown, next->second.shown))
      add(key, &fact, &next->second);
    if (both) ++next;
  }
  for (; next != newFacts.end(); ++next) add(next->first, nullptr, &next->second);
  return changes;
}

std::vector<Change> compareExpressions(const LineageGraph& before, NodeId old, const LineageGraph& after,
                                       NodeId now) {
  const std::string_view was = before.rawExpression(old);
  const std::string_view is = after.rawExpression(now);
  if (was == is || !differs<std::string_view>(was, is, before.expression(old), after.expression(now)))
    return {};
  Change change;
  change.about = Change::About::expression;
  change.what = "expression";
  if (!was.empty()) change.before = before.expression(old);
  if (!is.empty()) change.after = after.expression(now);
  const std::string_view language = after.language(now);
  change.onlyLayout = !was.empty() && !is.empty() && before.language(old) == language &&
                      withoutLayout(was, language) == withoutLayout(is, language);
  change.hidden = change.before == change.after;
  return {std::move(change)};
}

OpenNameChanges compareOpenNames(const LineageGraph& before, NodeId old, const LineageGraph& after,
                                 NodeId now) {
  const Open oldNames = openNamesOf(before, old);
  const Open newNames = openNamesOf(after, now);
  OpenNameChanges result;
  for (const auto& [key, name] : newNames) {
    const auto known = oldNames.find(key);
    const bool isOpen = known != oldNames.end();
    if (name.state == OpenNameState::mistake && (!isOpen || known->second.state != name.state))
      result.broken.push_back(name);
    else if (old != kNoNode &&
             (!isOpen || known->second.state != name.state || known->second.note != name.note))
      result.changes.push_back(nameChange(isOpen ? &known->second : nullptr, &name));
  }
  for (const auto& [key, name] : oldNames)
    if (!newNames.contains(key)) result.changes.push_back(nameChange(&name, nullptr));
  return result;
}

}  // namespace tav

#include "expressions/cube_names.h"

#include <algorithm>
#include <array>

#include "framework/expression/words.h"
#include "framework/model/roles.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::string_view kMeasuresName = "measures";
constexpr std::string_view kMeasuresLevel = "measureslevel";
constexpr std::string_view kKpiPrefix = "kpi";

bool meansAll(std::string_view folded) {
  return folded == "all" || folded.starts_with("all ");
}

/// A key of several names, which hold no NUL.
std::string joined(std::initializer_list<std::string_view> names) {
  std::string key;
  for (const std::string_view name : names) key.append(name).push_back('\0');
  return key;
}

std::string keyOf(const std::vector<ReferencePart>& parts) {
  std::string key;
  for (const ReferencePart& part : parts) key.append(part.folded).push_back('\0');
  return key;
}

std::string shownName(std::string_view dimension, std::string_view hierarchy) {
  return bracketed(dimension).append(".").append(bracketed(hierarchy));
}

std::string unquotedText(std::string_view text) {
  if (text.size() >= 2 && (text.front() == '\'' || text.front() == '"')) return unquotedPart(text);
  return std::string(text);
}

}  // namespace

std::vector<ReferencePart> partsOfReference(std::string_view reference) {
  std::vector<ReferencePart> parts;
  while (!reference.empty()) {
    const std::size_t length = std::min(namePartLength(reference), reference.size());
    const std::string_view text = trimmed(reference.substr(0, length));
    ReferencePart part;
    part.isKey = text.starts_with('&');
    part.isBare = !text.empty() && text.front() != '[' && !part.isKey;
    part.name = part.isKey ? std::string(text) : part.isBare ? std::string(text) : unquotedPart(text);
    part.folded = foldedName(part.name);
    parts.push_back(std::move(part));
    reference.remove_prefix(std::min(length + 1, reference.size()));
  }
  return parts;
}

const DimensionNames::Names& DimensionNames::of(const TAVDimension& dimension) {
  const auto [place, isNew] = names_.try_emplace(&dimension);
  Names& names = place->second;
  if (!isNew) return names;
  for (const TAVFeature& feature : dimension.features)
    if (const auto* attribute = as<TAVDimensionAttribute>(&feature))
      names.attributes.try_emplace(foldedName(attribute->getName()), attribute);
  for (TAVHierarchy& hierarchy : dimension.hierarchies) {
    names.hierarchies.try_emplace(foldedName(hierarchy.getName()), &hierarchy);
    for (const TAVHierarchyLevelAssociation& use : hierarchy.hierarchyLevelAssociations)
      if (use.level) names.levels.try_emplace(foldedName(use.level->getName()), keyAttributeOf(*use.level));
  }
  return names;
}

CubeNames::CubeNames(const TAVCube& cube, ModelNames& model, DimensionNames& dimensions)
    : model_(model), dimensions_(dimensions), cubeName_(foldedName(cube.getName())) {
  // A cube's dimensions and their aliases are made in pairs.
  std::vector<const TAVAliasClassifier*> aliases;
  std::vector<const TAVDesignPackage*> folders;
  const auto* package = as<TAVDesignPackage>(cube.nameSpace.get());
  if (!package) return;
  for (const TAVNamespaceElement& element : package->namespaceElements) {
    const auto* alias = as<TAVAliasClassifier>(&element);
    if (alias && alias->nativeType == label::kDimension) aliases.push_back(alias);
    if (const auto* folder = as<TAVDesignPackage>(&element)) folders.push_back(folder);
  }
  // A measure with data comes before a calculated one that repeats its name.
  for (const bool groups : {true, false})
    for (const TAVDesignPackage* folder : folders)
      if ((folder->nativeType == label::kMeasureGroups) == groups) addFolder(*folder);
  std::size_t place = 0;
  for (const TAVCubeDimensionAssociation& association : cube.cubeDimensionAssociations) {
    const TAVAliasClassifier* alias = place < aliases.size() ? aliases[place++] : nullptr;
    if (association.dimension) addRole(association.getName(), {association.dimension.get(), alias});
  }
  for (const TAVFeature* measure : measures_) spellings_.add(measure->getName());
}

CubeNames::CubeNames(const TAVDimension& dimension, ModelNames& model, DimensionNames& dimensions)
    : model_(model), dimensions_(dimensions) {
  addRole(dimension.getName(), {&dimension, nullptr});
}

void CubeNames::addRole(std::string_view name, Role role) {
  const auto [place, isNew] = roles_.try_emplace(foldedName(name), role);
  if (!isNew) return;
  inOrder_.push_back(&place->second);
  spellings_.add(name);
  for (const TAVHierarchy& hierarchy : role.dimension->hierarchies) {
    spellings_.add(hierarchy.getName());
    for (const TAVHierarchyLevelAssociation& use : hierarchy.hierarchyLevelAssociations)
      if (use.level) spellings_.add(use.level->getName());
  }
  for (const auto& feature : role.dimension->features) spellings_.add(feature.getName());
}

void CubeNames::addFolder(const TAVDesignPackage& folder) {
  const bool groups = folder.nativeType == label::kMeasureGroups;
  const bool kpis = folder.nativeType == label::kKpis;
  if (!groups && !kpis && folder.nativeType != label::kCalculatedMeasures) return;
  for (const TAVNamespaceElement& element : folder.namespaceElements) {
    const auto* classifier = as<TAVClassifier>(&element);
    if (!classifier) continue;
    spellings_.add(classifier->getName());
    if (kpis) {
      kpis_.try_emplace(foldedName(classifier->getName()), classifier);
      for (const TAVFeature& value : classifier->features) kpiValues_.push_back(&value);
      continue;
    }
    if (groups) groups_.try_emplace(foldedName(classifier->getName()), classifier);
    for (const TAVFeature& measure : classifier->features) {
      measures_.push_back(&measure);
      isMeasure_.insert(&measure);
      std::string folded = foldedName(measure.getName());
      if (!groups) calculatedByName_.try_emplace(folded, &measure);
      measuresByName_.try_emplace(std::move(folded), &measure);
    }
  }
}

void CubeNames::define(std::string_view name, ItemId item, bool isSet, Moment moment) {
  std::vector<ReferencePart> parts = partsOfReference(name);
  leaveOutCube(parts);
  if (parts.empty()) return;
  spellings_.add(parts.back().name);
  const auto add = [&](ScriptNames& names, const std::string& key) {
    if (moment == Moment::ahead)
      names.foresee(key, {item, isSet});
    else
      names.define(key, {item, isSet});
  };
  const std::string& last = parts.back().folded;
  if (parts.front().folded == kMeasuresName && !isSet) return add(newMeasures_, last);
  add(defined_, keyOf(parts));
  if (parts.size() == 1) return;
  // Expressions may leave out levels, parents, and the dimension.
  if (parts.size() > 2) add(abbreviated_, joined({parts.front().folded, last}));
  add(abbreviated_, joined({last}));
}

void CubeNames::drop(std::string_view name) {
  std::vector<ReferencePart> parts = partsOfReference(name);
  leaveOutCube(parts);
  if (parts.empty()) return;
  const bool isMeasure = parts.size() > 1 && parts.front().folded == kMeasuresName;
  const Defined* defined = isMeasure ? newMeasures_.find(parts.back().folded) : defined_.find(keyOf(parts));
  if (!defined) return;
  const ItemId item = defined->item;
  for (ScriptNames* names : {&defined_, &abbreviated_, &newMeasures_}) names->drop(item);
}

void CubeNames::defineBeyond(std::string_view name, ItemId item, std::string_view what) {
  beyond_.try_emplace(foldedName(name), Beyond{item, std::string(what)});
}

const TAVFeature* CubeNames::findCalculated(std::string_view name) const {
  const auto found = calculatedByName_.find(foldedName(name));
  return found == calculatedByName_.end() ? nullptr : found->second;
}

const TAVModelObject* CubeNames::findMeasureGroup(std::string_view name) const {
  const auto found = groups_.find(foldedName(name));
  return found == groups_.end() ? nullptr : found->second;
}

/// CURRENTCUBE, or the cube's own name, before a name.
void CubeNames::leaveOutCube(std::vector<ReferencePart>& parts) const {
  if (parts.size() < 2) return;
  const std::string& first = parts.front().folded;
  if (first == "currentcube" || (!cubeName_.empty() && first == cubeName_ && !roles_.contains(first)))
    parts.erase(parts.begin());
}

/// Whether the last part is the name of a measure or an attribute after all: Measures.Count, Product.Name.
bool CubeNames::isOwnName(const std::vector<ReferencePart>& parts) {
  if (parts.size() != 2) return false;
  const std::string& name = parts.back().folded;
  if (parts.front().folded == kMeasuresName)
    return measuresByName_.contains(name) || findDefinedMeasure(name) != nullptr;
  const auto role = roles_.find(parts.front().folded);
  return role != roles_.end() && dimensions_.of(*role->second.dimension).attributes.contains(name);
}

NameMeaning CubeNames::find(std::string_view reference) {
  NameMeaning meaning;
  std::vector<ReferencePart> parts = partsOfReference(reference);
  leaveOutCube(parts);
  while (parts.size() > 1 && parts.back().isBare && isMemberWord(parts.back().folded) && !isOwnName(parts))
    parts.pop_back();
  if (parts.empty()) return meaning;
  const ReferencePart& first = parts.front();
  if (parts.size() == 1 && first.isBare && (first.folded == "this" || first.folded == "currentcube"))
    return meaning;
  if (first.folded == kMeasuresName) {
    findMeasure(parts, meaning);
    return meaning;
  }
  if (const auto role = roles_.find(first.folded); role != roles_.end()) {
    meaning.dimension = role->second.dimension;
    const TAVDimension* taken = model_.findDimension(first.name);
    meaning.isAsInModel = taken == meaning.dimension;
    if (taken != meaning.dimension) meaning.taken = taken;
    if (!addDefined(parts, meaning)) findInRole(role->second, parts, meaning);
    return meaning;
  }
  if (addDefined(parts, meaning)) return meaning;
  if (parts.size() == 1) findMeasureByName(first, meaning);
  if (meaning.objects.empty() && meaning.items.empty()) findNested(parts, meaning);
  if (meaning.objects.empty() && meaning.items.empty() && !meaning.open) findMistake(first, meaning);
  return meaning;
}

void CubeNames::findMistake(const ReferencePart& part, NameMeaning& meaning) {
  if (const auto beyond = beyond_.find(part.folded); beyond != beyond_.end()) {
    meaning.open = OpenNameState::beyond;
    meaning.note = beyond->second.what;
    if (beyond->second.item != kNoItem) meaning.items.push_back(beyond->second.item);
    return;
  }
  meaning.open = OpenNameState::mistake;
  meaning.note = spellings_.nearest(part.name);
}

void CubeNames::findMeasure(const std::vector<ReferencePart>& parts, NameMeaning& meaning) {
  const std::size_t place = parts.size() > 2 && parts[1].folded == kMeasuresLevel ? 2 : 1;
  if (place >= parts.size() || parts[place].folded == kMeasuresLevel) {
    meaning.open = OpenNameState::exists;
    meaning.note = "the dimension of the measures";
    return;
  }
  findMeasureByName(parts[place], meaning);
  if (meaning.objects.empty() && meaning.items.empty()) findMistake(parts[place], meaning);
}

void CubeNames::findMeasureByName(const ReferencePart& part, NameMeaning& meaning) {
  if (const auto measure = measuresByName_.find(part.folded); measure != measuresByName_.end())
    meaning.objects.push_back(measure->second);
  else if (const Defined* defined = findDefinedMeasure(part.folded))
    meaning.items.push_back(defined->item);
}

const Defined* CubeNames::findDefinedMeasure(const std::string& folded) {
  const Defined* defined = newMeasures_.find(folded);
  return defined ? defined : newMeasures_.findAhead(folded);
}

const Defined* CubeNames::findDefined(const std::vector<ReferencePart>& parts) {
  if (defined_.empty()) return nullptr;
  const std::string whole = keyOf(parts);
  const std::string abbreviated =
      parts.size() > 2 ? joined({parts.front().folded, parts.back().folded}) : whole;
  if (const Defined* defined = defined_.find(whole)) return defined;
  if (const Defined* defined = abbreviated_.find(abbreviated)) return defined;
  if (const Defined* defined = defined_.findAhead(whole)) return defined;
  return abbreviated_.findAhead(abbreviated);
}

bool CubeNames::addDefined(const std::vector<ReferencePart>& parts, NameMeaning& meaning) {
  const Defined* defined = findDefined(parts);
  if (!defined) return false;
  meaning.items.push_back(defined->item);
  meaning.open = OpenNameState::exists;
  meaning.note = defined->isSet ? "a named set" : "a calculated member";
  return true;
}

void CubeNames::addNested() {
  hasNested_ = true;
  for (const Role* role : inOrder_) {
    const DimensionNames::Names& names = dimensions_.of(*role->dimension);
    for (const auto& [name, hierarchy] : names.hierarchies)
      nested_.try_emplace(name, Nested{role, hierarchy, nullptr});
    for (const auto& [name, attribute] : names.attributes)
      nested_.try_emplace(name, Nested{role, nullptr, attribute});
  }
  // Levels come last: most are called as their attributes are.
  for (const Role* role : inOrder_)
    for (const auto& [name, attribute] : dimensions_.of(*role->dimension).levels)
      if (attribute) nested_.try_emplace(name, Nested{role, nullptr, attribute});
}

/// A hierarchy, attribute or level whose dimension is left out.
void CubeNames::findNested(const std::vector<ReferencePart>& parts, NameMeaning& meaning) {
  if (!hasNested_) addNested();
  const auto found = nested_.find(parts.front().folded);
  if (found == nested_.end()) return;
  meaning.dimension = found->second.role->dimension;
  findBelow(found->second, parts, 1, meaning);
}

void CubeNames::findInRole(const Role& role, const std::vector<ReferencePart>& parts, NameMeaning& meaning) {
  const std::string_view dimension = parts.front().name;
  const auto whole = [&](const std::string& what) {
    meaning.whole = role.alias ? static_cast<const TAVClassifier*>(role.alias) : role.dimension;
    meaning.objects.push_back(meaning.whole);
    meaning.open = OpenNameState::exists;
    meaning.note = what + bracketed(dimension);
  };
  if (parts.size() == 1) return whole("the dimension ");
  const ReferencePart& second = parts[1];
  const DimensionNames::Names& names = dimensions_.of(*role.dimension);
  if (const auto hierarchy = names.hierarchies.find(second.folded); hierarchy != names.hierarchies.end())
    return findBelow({&role, hierarchy->second, nullptr}, parts, 2, meaning);
  if (const auto attribute = names.attributes.find(second.folded); attribute != names.attributes.end())
    return findBelow({&role, nullptr, attribute->second}, parts, 2, meaning);
  if (const auto level = names.levels.find(second.folded); level != names.levels.end() && level->second)
    return addAttribute(role, level->second, meaning);
  if (meansAll(second.folded)) return whole("the All member of ");
  if (second.isKey) return whole("a member of ");
  findMistake(second, meaning);
}

/// What stands behind a hierarchy or an attribute: a level, a member, or nothing.
void CubeNames::findBelow(const Nested& nested, const std::vector<ReferencePart>& parts, std::size_t place,
                          NameMeaning& meaning) {
  const Role& role = *nested.role;
  const bool all = place < parts.size() && meansAll(parts[place].folded);
  const auto exists = [&](std::string_view what) {
    meaning.open = OpenNameState::exists;
    const TAVModelObject& owner =
        nested.hierarchy ? static_cast<const TAVModelObject&>(*nested.hierarchy) : *nested.attribute;
    const std::string_view dimension =
        place == 2 ? std::string_view(parts.front().name) : role.dimension->getName().view();
    meaning.note = std::string(what).append(shownName(dimension, owner.getName().view()));
  };
  if (!nested.hierarchy) {
    addAttribute(role, nested.attribute, meaning);
    if (all && parts.size() == place + 1) exists("the All member of ");
    return;
  }
  const TAVLevel* level = place < parts.size() && !parts[place].isKey
                              ? model_.findLevel(*nested.hierarchy, parts[place].name)
                              : nullptr;
  if (level) return addAttribute(role, keyAttributeOf(*level), meaning);
  for (const TAVHierarchyLevelAssociation& use : nested.hierarchy->hierarchyLevelAssociations)
    if (use.level) addAttribute(role, keyAttributeOf(*use.level), meaning);
  if (place < parts.size() || meaning.objects.empty())
    exists(place >= parts.size() ? "the hierarchy " : all ? "the All member of " : "a member of ");
}

/// The attribute as the cube shows it.
void CubeNames::addAttribute(const Role& role, const TAVDimensionAttribute* attribute, NameMeaning& meaning) {
  if (!attribute) return;
  const TAVFeature* shown = role.alias ? role.alias->features.get(attribute->getName()) : nullptr;
  meaning.objects.push_back(shown ? shown : attribute);
  meaning.attributes.push_back(attribute);
}

NameMeaning CubeNames::findOfFunction(std::string_view function, std::string_view argument) {
  NameMeaning meaning;
  const std::string name = unquotedText(argument);
  const std::string folded = foldedName(function);
  if (folded == "measuregroupmeasures") {
    if (const TAVModelObject* group = findMeasureGroup(name))
      meaning.objects.push_back(group);
    else
      findMistake({name, foldedName(name), false, false}, meaning);
    return meaning;
  }
  if (!folded.starts_with(kKpiPrefix)) return meaning;
  for (const KpiPart& part : kKpiParts) {
    if (folded.substr(kKpiPrefix.size()) != foldedName(part.name)) continue;
    const auto kpi = kpis_.find(foldedName(name));
    const TAVFeature* value = kpi == kpis_.end() ? nullptr : kpi->second->features.get(part.name);
    if (value)
      meaning.objects.push_back(value);
    else if (!addDefined({{name, foldedName(name), false, false}}, meaning))
      findMistake({name, foldedName(name), false, false}, meaning);
  }
  return meaning;
}

}  // namespace tav

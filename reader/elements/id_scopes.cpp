#include "reader/elements/id_scopes.h"

#include <algorithm>
#include <array>

#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

constexpr std::string_view kDataSourceId = "DataSourceID";
constexpr std::string_view kThisDatabase = ".";

struct ScopeElement {
  std::string_view tag;
  std::string_view IdScope::*member;
};
constexpr std::array<ScopeElement, 5> kScopeElements{{{kCubeId, &IdScope::cube},
                                                      {"CubeDimensionID", &IdScope::cubeDimension},
                                                      {kDimensionId, &IdScope::dimension},
                                                      {kMeasureGroupId, &IdScope::group},
                                                      {kDataSourceViewId, &IdScope::view}}};

/// The part of a scope that an item of this space opens with its own ID; or null.
std::string_view IdScope::*ownMember(IdSpace space) {
  switch (space) {
    case IdSpace::dimension:
      return &IdScope::dimension;
    case IdSpace::cube:
      return &IdScope::cube;
    case IdSpace::cubeDimension:
      return &IdScope::cubeDimension;
    case IdSpace::measureGroup:
      return &IdScope::group;
    case IdSpace::miningStructure:
      return &IdScope::structure;
    default:
      return nullptr;
  }
}

/// A scope that is copied only when something in it changes.
class Changing {
 public:
  Changing(std::deque<IdScope>& scopes, const IdScope& outer) : scopes_(scopes), outer_(outer) {}
  IdScope& change() {
    if (!changed_) changed_ = &scopes_.emplace_back(outer_);
    return *changed_;
  }
  [[nodiscard]] const IdScope& result() const { return changed_ ? *changed_ : outer_; }

 private:
  std::deque<IdScope>& scopes_;
  const IdScope& outer_;
  IdScope* changed_ = nullptr;
};

void takeSource(const TAVDOMElement& source, const ElementRule& rule, Changing& scope) {
  if (const TAVDOMElement* view = source.getFirstElement(kDataSourceViewId))
    scope.change().view = view->getValue();
  if (rule.kind != ObjectKind::measureGroup) return;
  scope.change().sourceCube = source.getFirstElementValue(kCubeId);
  scope.change().sourceGroup = source.getFirstElementValue(kMeasureGroupId);
  const std::string_view database = source.getFirstElementValue(kDataSourceId);
  scope.change().isSourceBeyond = !database.empty() && database != kThisDatabase;
}

}  // namespace

const IdScope& IdScopes::of(const TAVDOMElement& element, const ElementRule& rule, const IdScope& outer) {
  Changing scope(scopes_, outer);
  const bool isItem = rule.reading == Reading::item;
  for (const TAVDOMElement& child : element.getElements()) {
    const std::string_view tag = child.getLocalName();
    if (isItem && tag == kSource) takeSource(child, rule, scope);
    if (tag == "SourceMeasureGroup") {  // of the columns of a nested table
      scope.change().cube = child.getFirstElementValue(kCubeId);
      scope.change().group = child.getFirstElementValue(kMeasureGroupId);
    }
    if (!tag.ends_with(kId)) continue;
    if (tag == kId) {
      if (const auto member = isItem ? ownMember(rule.space) : nullptr)
        scope.change().*member = child.getValue();
      continue;
    }
    const auto* row = std::find_if(kScopeElements.begin(), kScopeElements.end(),
                                   [&](const ScopeElement& known) { return known.tag == tag; });
    if (row != kScopeElements.end()) scope.change().*(row->member) = child.getValue();
    // What is bound through a data source is of another database.
    if (tag == kDataSourceId && child.getValue() != kThisDatabase &&
        (element.getFirstElement(kCubeId) || element.getFirstElement(kDimensionId)))
      scope.change().isBeyond = true;
  }
  return scope.result();
}

const IdScope& IdScopes::linked(const IdScope& scope) {
  if (scope.sourceCube.empty()) return scope;
  IdScope& linked = scopes_.emplace_back(scope);
  linked.cube = scope.sourceCube;
  linked.group = scope.sourceGroup;
  linked.isBeyond = scope.isSourceBeyond;
  return linked;
}

const IdScope& IdScopes::inCubeDimension(const IdScope& scope, std::string_view cubeDimension) {
  IdScope& other = scopes_.emplace_back(scope);
  other.cubeDimension = cubeDimension;
  return other;
}

const IdScope& IdScopes::naming(const IdScope& scope, const TAVModelObject* object) {
  IdScope& other = scopes_.emplace_back(scope);
  other.cubeObject = as<TAVCube>(object);
  other.dimensionObject = as<TAVDimension>(object);
  return other;
}

}  // namespace tav

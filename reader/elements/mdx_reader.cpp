#include "reader/elements/mdx_reader.h"

#include <string>

#include "framework/std/dotted_name.h"

namespace tav {
namespace {

constexpr std::string_view kCalculationReference = "CalculationReference";

/// What a script makes of what has such properties.
ObjectKind calculationKind(std::string_view type) {
  if (type == "Set") return ObjectKind::namedSet;
  if (type == "Member") return ObjectKind::calculatedMember;
  return type == "Cells" ? ObjectKind::calculatedCells : ObjectKind::other;
}

/// The calculated measure of a cube of that name in an expression; null when there is none.
const TAVMeasure* findMeasure(const ReadElements& elements, const TAVCube* cube, std::string_view name) {
  constexpr std::string_view kPrefix = "[Measures].[";
  if (!cube || !name.starts_with(kPrefix) || !name.ends_with(']')) return nullptr;
  return elements.findCalculated(*cube, name.substr(kPrefix.size(), name.size() - kPrefix.size() - 1));
}

}  // namespace

void MdxReader::addExpression(const ElementPlace& place, std::string_view text, RelationKind relation) {
  reading_.run.expressions.push_back(
      {place.item, text, relation, place.scope->cubeObject, place.scope->dimensionObject});
}

void MdxReader::addCalculationName(const ElementPlace& place, std::string_view name, RelationKind relation) {
  if (name.find('[') == std::string_view::npos)
    name = reading_.run.texts.emplace_back("[" + std::string(name) + "]");
  addExpression(place, name, relation);
}

void MdxReader::addTarget(const ElementPlace& place, const ElementRule& rule, std::string_view text) {
  constexpr std::string_view kCall = "MeasureGroupMeasures(\"";
  constexpr std::string_view kEnd = "\")";
  if (!text.starts_with(kCall) || !text.ends_with(kEnd)) return addExpression(place, text, rule.relation);
  const std::string_view name = text.substr(kCall.size(), text.size() - kCall.size() - kEnd.size());
  reading_.references.add(
      IdReference{place.item, rule.relation, rule.space, place.scope, name, "Target", {}});
}

void MdxReader::openCalculation(ElementPlace& place) {
  place.label = place.element->getFirstElement(kCalculationReference);
  place.outerBegin = reading_.settings.begin();
  place.isItem = true;
  Details& details = reading_.details;
  const std::string_view name = place.element->getFirstElementValue(kCalculationReference);
  const TAVCube* cube = place.scope->cubeObject;
  if (const TAVMeasure* measure = findMeasure(reading_.run.elements, cube, name)) {
    place.item = details.itemOf(*measure);
    return;
  }
  const ObjectKind kind = calculationKind(place.element->getFirstElementValue("CalculationType"));
  const ItemId owner = cube && kind != ObjectKind::other ? details.itemOf(*cube) : place.item;
  const bool hasBareName = kind == ObjectKind::namedSet || kind == ObjectKind::calculatedCells;
  place.item = details.add(kind, owner, hasBareName ? unquotedPart(name) : std::string(name));
  addCalculationName(place, name, RelationKind::mentions);
}

}  // namespace tav

#include "framework/model/roles.h"

#include "framework/model/model.h"
#include "framework/std/text.h"

namespace tav {
namespace {

bool isIn(const TAVClassifier& classifier, std::string_view folder) {
  const TAVNamespace* package = classifier.nameSpace.get();
  return package && package->nativeType == folder;
}

ClassifierRole roleOfDimension(const TAVDimension& dimension) {
  if (dimension.measureGroup) return ClassifierRole::measureGroup;
  if (isIn(dimension, label::kKpis)) return ClassifierRole::kpi;
  return isIn(dimension, label::kCalculatedMeasures) ? ClassifierRole::calculatedMeasures
                                                     : ClassifierRole::dimension;
}

}  // namespace

ClassifierRole roleOf(const TAVClassifier& classifier) {
  if (const auto* table = as<TAVTable>(&classifier))
    return table->tableType == label::kNamedQuery ? ClassifierRole::namedQuery : ClassifierRole::viewTable;
  if (const auto* dimension = as<TAVDimension>(&classifier)) return roleOfDimension(*dimension);
  if (is<TAVCube>(classifier)) return ClassifierRole::cube;
  if (is<TAVLevel>(classifier)) return ClassifierRole::level;
  return classifier.nativeType == label::kMeasureGroup ? ClassifierRole::linkedMeasureGroup
                                                       : ClassifierRole::cubeDimension;
}

bool isTabular(const TAVModel& model) {
  return model.nativeType == label::kTabularDatabase;
}

TAVDimensionAttribute* keyAttributeOf(const TAVLevel& level) {
  const TAVLevelKey* key = level.levelKeys.first();
  const TAVLevelAttribute* attribute = key ? key->levelAttributes.first() : nullptr;
  return attribute ? attribute->dimensionAttribute.get() : nullptr;
}

bool countsRows(const TAVMeasure& measure) {
  return measure.expression == label::kRowCount;
}

std::vector<std::string_view> querySourcesOf(const TAVModelObject& object) {
  if (const auto* table = as<TAVTable>(&object)) return linesOf(table->querySources);
  if (const auto* column = as<TAVColumn>(&object)) return linesOf(column->querySources);
  if (const auto* condition = as<TAVCondition>(&object)) return linesOf(condition->querySources);
  return {};
}

std::vector<std::string_view> unresolvedNamesOf(const TAVModelObject& object) {
  const auto* measure = as<TAVMeasure>(&object);
  return measure ? linesOf(measure->unresolved) : linesOfProperty(object, "unresolved");
}

std::vector<std::string_view> linesOfProperty(const TAVModelObject& object, std::string_view name) {
  for (const TAVPropertyValue& property : object.propertyValues)
    if (const TAVPropertyType* type = property.propertyType.get(); type && type->getName() == name)
      return linesOf(property.value);
  return {};
}

}  // namespace tav

#include "dimensions/dimension.h"

#include "bridge/catalogue/literals.h"
#include "dimensions/attribute.h"
#include "dimensions/hierarchy.h"
#include "framework/model/roles.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

TAVDimensionType typeOf(const TAVDOMElement& dimension) {
  const TAVString type = dimension.getFirstElementValue(kType);
  return TAVDimensionType(type.equals("Time", false) ? TAVDimensionType::kTime : TAVDimensionType::kRegular);
}

std::string_view viewIdOf(const TAVDOMElement& dimension) {
  const TAVDOMElement* source = dimension.getFirstElement(kSource);
  return source ? source->getFirstElementValue(kDataSourceViewId) : std::string_view();
}

}  // namespace

Owned<TAVDimension> importDimension(ImportRun& run, const TAVDOMElement& element, TAVOlapSchema& schema) {
  if (element.getTagName() != kDimension) return nullptr;
  auto dimension = make<TAVDimension>();
  setNameIdDescription(element, *dimension);
  dimension->nativeType = label::kDimension;
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DIMENSION.log(*run.log, dimension->getName());

  // Levels name attributes, so attributes come first.
  AttributeRecords attributes;
  if (const TAVDOMElement* list = element.getFirstElement(kAttributes))
    for (const TAVDOMElement& attribute : list->getElements())
      importAttribute(run, attribute, *dimension, viewIdOf(element), attributes);
  if (const TAVDOMElement* list = element.getFirstElement(kHierarchies))
    for (const TAVDOMElement& hierarchy : list->getElements())
      importHierarchy(run, hierarchy, *dimension, attributes);
  dimension->dimensionType = typeOf(element);

  run.records.add(*dimension);
  note(run, element, *dimension);
  schema.addImportedNamespaceElementUniqueName(*dimension, '/');
  return dimension;
}

}  // namespace tav

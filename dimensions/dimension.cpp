#include "bridge/catalogue/literals.h"
#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

TAVDimensionType typeOf(const TAVDOMElement& dimension) {
  const TAVString type = dimension.getFirstElementValue(kType);
  return TAVDimensionType(type.equals("Time", false) ? TAVDimensionType::kTime : TAVDimensionType::kRegular);
}

}  // namespace

tav::Owned<TAVDimension> TAVSQLServerXMLAImportBridge::importDimension(const TAVDOMElement& element,
                                                                       TAVOlapSchema& schema) {
  if (element.getTagName() != kDimension) return nullptr;
  auto dimension = tav::make<TAVDimension>();
  setNameIdDescription(element, *dimension);
  dimension->nativeType = "Dimension";
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DIMENSION.log(*log_, dimension->getName());

  TAVClassifierMap& map = dimension->addClassifierMap(tav::make<TAVClassifierMap>());
  map.addDestinationClassifier(*dimension);
  if (const TAVDOMElement* source = element.getFirstElement(kSource))
    map.sourceReference = source->getFirstElementValue(kDataSourceViewId);

  recordsOfDimension_.clear();
  int counter = 0;
  if (const TAVDOMElement* attributes = element.getFirstElement(kAttributes))
    for (const TAVDOMElement& attribute : attributes->getElements())
      importAttribute(attribute, *dimension, map, counter);
  if (map.sourceClassifiers.empty())
    tav::destroy(map);
  else
    map.sourceReference = "";

  if (const TAVDOMElement* hierarchies = element.getFirstElement(kHierarchies))
    for (const TAVDOMElement& hierarchy : hierarchies->getElements()) importHierarchy(hierarchy, *dimension);
  dimension->dimensionType = typeOf(element);

  dimensions_.add(dimension.get(), true, nullptr);
  registerObject(*dimension);
  schema.addImportedNamespaceElementUniqueName(*dimension, '/');
  return dimension;
}

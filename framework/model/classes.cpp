#include "framework/model/model.h"

// The operations that callers know by name; each is an operation on one link. What puts an object into a
// container takes it as Owned, also where it is the operation of the part: so it can be seen who deletes it.

using tav::add;
using tav::addUnique;
using tav::as;
using tav::clear;
using tav::link;
using tav::Owned;

TAVSynonym& TAVModelObject::addSynonym(Owned<TAVSynonym> synonym) {
  return add<&TAVModelObject::synonyms>(*this, std::move(synonym));
}

TAVMetadataOrigin& TAVModel::addMetadataOrigin(Owned<TAVMetadataOrigin> origin) {
  return add<&TAVModel::metadataOrigins>(*this, std::move(origin));
}

TAVStoreConnection& TAVModel::addStoreConnection(Owned<TAVStoreConnection> connection) {
  return add<&TAVModel::storeConnections>(*this, std::move(connection));
}

Owned<TAVModel> TAVModel::removeContent() {
  return content ? tav::take(*this) : nullptr;
}

TAVDesignPackage& TAVStoreModel::addDesignPackageUniqueName(Owned<TAVDesignPackage> package, char separator) {
  return addUnique<&TAVStoreModel::designPackages>(*this, std::move(package), separator);
}

std::vector<TAVPackage*> TAVNamespace::getChildPackages() const {
  std::vector<TAVPackage*> packages;
  for (TAVNamespaceElement& element : namespaceElements)
    if (auto* package = as<TAVPackage>(&element)) packages.push_back(package);
  return packages;
}

std::int32_t TAVNamespace::getChildPackageCount() const {
  return namespaceElements.getCount(tav::classId<TAVPackage>);
}

TAVPackage* TAVNamespace::getChildPackage(std::int32_t index) const {
  return static_cast<TAVPackage*>(namespaceElements.at(index, tav::classId<TAVPackage>));
}

TAVPackage* TAVNamespace::getChildPackage(std::string_view name) const {
  const TAVObjectCollection& elements = namespaceElements;
  return static_cast<TAVPackage*>(elements.get(name, tav::classId<TAVPackage>));
}

void TAVPackage::addImportedNamespaceElementUniqueName(TAVNamespaceElement& element, char separator) {
  TAVString name = tav::uniqueNameIn(importedNamespaceElements, element.getName(), separator);
  if (name != element.getName()) element.setName(std::move(name));
  link<&TAVPackage::importedNamespaceElements>(*this, element);
}

std::vector<TAVModelElement*> TAVDesignPackage::getModelElements() const {
  std::vector<TAVModelElement*> elements;
  for (TAVNamespaceElement& element : namespaceElements)
    if (auto* model = as<TAVModelElement>(&element)) elements.push_back(model);
  return elements;
}

std::int32_t TAVDesignPackage::getModelElementCount() const {
  return namespaceElements.getCount(tav::classId<TAVModelElement>);
}

TAVModelElement* TAVDesignPackage::getModelElement(std::int32_t index) const {
  return static_cast<TAVModelElement*>(namespaceElements.at(index, tav::classId<TAVModelElement>));
}

TAVClassifierMap& TAVClassifier::addClassifierMap(Owned<TAVClassifierMap> map) {
  return add<&TAVClassifier::classifierMaps>(*this, std::move(map));
}

TAVClassifierMap* TAVClassifier::getDestinationOfClassifierMap() const {
  return destinationOfClassifierMaps.first();
}

TAVCubeDimensionAssociation& TAVCube::addCubeDimensionAssociation(
    Owned<TAVCubeDimensionAssociation> association) {
  return add<&TAVCube::cubeDimensionAssociations>(*this, std::move(association));
}

TAVHierarchy& TAVDimension::addHierarchy(Owned<TAVHierarchy> hierarchy) {
  return add<&TAVDimension::hierarchies>(*this, std::move(hierarchy));
}

void TAVDimension::addDefaultHierarchy(TAVHierarchy& hierarchy) {
  link<&TAVDimension::defaultHierarchy>(*this, hierarchy);
}

void TAVDimension::removeDefaultHierarchy() {
  clear<&TAVDimension::defaultHierarchy>(*this);
}

TAVLevel& TAVLevel::addDimension(Owned<TAVLevel> level, TAVDimension& dimension) {
  return add<&TAVDimension::levels>(dimension, std::move(level));
}

Owned<TAVLevel> TAVLevel::removeDimension() {
  return dimension ? tav::take(*this) : nullptr;
}

void TAVLevel::addDefaultLevelAttribute(TAVLevelAttribute& attribute) {
  link<&TAVLevel::defaultLevelAttribute>(*this, attribute);
}

void TAVLevel::removeDefaultLevelAttribute() {
  clear<&TAVLevel::defaultLevelAttribute>(*this);
}

void TAVDerivedType::addDerivedFromConcreteType(TAVConcreteType& base) {
  link<&TAVDerivedType::derivedFromConcreteType>(*this, base);
}

void TAVFeature::addType(TAVType& dataType) {
  link<&TAVFeature::type>(*this, dataType);
}

TAVFeatureMap* TAVFeature::getDestinationOfFeatureMap() const {
  return destinationOf.get();
}

void TAVLevelAttribute::addDimensionAttribute(TAVDimensionAttribute& attribute) {
  link<&TAVLevelAttribute::dimensionAttribute>(*this, attribute);
}

TAVHierarchyLevelAssociation& TAVHierarchy::addHierarchyLevelAssociation(
    Owned<TAVHierarchyLevelAssociation> association) {
  return add<&TAVHierarchy::hierarchyLevelAssociations>(*this, std::move(association));
}

void TAVHierarchy::addTopHierarchyLevelAssociation(TAVHierarchyLevelAssociation& association) {
  link<&TAVHierarchy::topHierarchyLevelAssociation>(*this, association);
}

void TAVHierarchy::addBottomHierarchyLevelAssociation(TAVHierarchyLevelAssociation& association) {
  link<&TAVHierarchy::bottomHierarchyLevelAssociation>(*this, association);
}

TAVHierarchyLevelAssociation& TAVHierarchyLevelAssociation::addHierarchy(
    Owned<TAVHierarchyLevelAssociation> association, TAVHierarchy& hierarchy) {
  return hierarchy.addHierarchyLevelAssociation(std::move(association));
}

void TAVHierarchyLevelAssociation::addLevel(TAVLevel& used) {
  link<&TAVHierarchyLevelAssociation::level>(*this, used);
}

TAVLevelKey& TAVLevelKey::addLevel(Owned<TAVLevelKey> key, TAVLevel& level) {
  return add<&TAVLevel::levelKeys>(level, std::move(key));
}

void TAVLevelKey::addLevelAttribute(TAVLevelAttribute& attribute) {
  link<&TAVLevelKey::levelAttributes>(*this, attribute);
}

void TAVCubeDimensionAssociation::addDimension(TAVDimension& used) {
  link<&TAVCubeDimensionAssociation::dimension>(*this, used);
}

void TAVClassifierMap::addDestinationClassifier(TAVClassifier& destination) {
  link<&TAVClassifierMap::destinationClassifier>(*this, destination);
}

void TAVClassifierMap::addSourceClassifier(TAVClassifier& source) {
  link<&TAVClassifierMap::sourceClassifiers>(*this, source);
}

TAVFeatureMap& TAVClassifierMap::addFeatureMap(Owned<TAVFeatureMap> map) {
  return add<&TAVClassifierMap::featureMaps>(*this, std::move(map));
}

void TAVFeatureMap::addDestinationFeature(TAVFeature& destination) {
  link<&TAVFeatureMap::destinationFeature>(*this, destination);
}

void TAVFeatureMap::addSourceFeature(TAVFeature& source) {
  link<&TAVFeatureMap::sourceFeatures>(*this, source);
}

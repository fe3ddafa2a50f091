#include "bridge/catalogue/literals.h"
#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

/// The element that defines the database, in whichever of the accepted shapes the document comes; null when
/// it holds none.
const TAVDOMElement* findDatabase(const TAVDOMElement& root) {
  const TAVDOMElement* command = &root;
  if (root.getTagName() == kBatch)
    command = root.getFirstElement(kAlter);
  else if (root.getTagName() != kCreate)
    return &root;
  const TAVDOMElement* definition = command ? command->getFirstElement(kObjectDefinition) : nullptr;
  return definition ? definition->getFirstElement(kDatabase) : nullptr;
}

tav::Owned<TAVDesignPackage> makePackage(const char* name) {
  auto package = tav::make<TAVDesignPackage>(name);
  package->folder = false;
  return package;
}

}  // namespace

void TAVSQLServerXMLAImportBridge::setNameIdDescription(const TAVDOMElement& element, TAVElement& object) {
  object.setName(element.getFirstElementValue(kName));
  object.nativeId = element.getFirstElementValue(kId);
  object.description = element.getFirstElementValue(kDescription);
}

void TAVSQLServerXMLAImportBridge::importDocument(const TAVDOMElement& root) {
  const TAVDOMElement* database = findDatabase(root);
  if (!database) return;

  auto made = tav::make<TAVOlapSchema>();
  setNameIdDescription(*database, *made);
  made->setName("");
  TAVOlapSchema& schema = model_->addDataPackageUniqueName(std::move(made), '/');
  model_->setName(schema.getName());
  registerObject(schema);
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_MODEL.log(*log_, model_->getName());

  joinGroups_ = &model_->addDesignPackageUniqueName(makePackage("Join Groups"), '/');
  setNameIdDescription(*database, *model_);
  model_->addDesignPackageUniqueName(makePackage("Transformations"), '/');

  importDatabase(*database, schema);
  tidyModel();
}

void TAVSQLServerXMLAImportBridge::tidyModel() {
  for (TAVStoreConnection& connection : model_->storeConnections) {
    connection.nativeId = "";
    connection.nativeType = "DataSource";
    for (TAVClassifier& classifier : connection.connectionClassifiers) classifier.nativeId = "";
  }
  std::vector<TAVPackage*> empty;
  for (TAVDataPackage& package : model_->dataPackages) {
    package.nativeId = "";
    if (package.getModelObjectCount() == 0) empty.push_back(&package);
  }
  for (TAVDesignPackage& package : model_->designPackages) {
    if (package.getChildPackageCount() == 0 && package.getModelElementCount() == 0)
      empty.push_back(&package);
    else
      clearPackageIds(package);
  }
  for (TAVPackage* package : empty) tav::destroy(*package);
}

void TAVSQLServerXMLAImportBridge::clearPackageIds(TAVDesignPackage& package) {
  std::vector<TAVDesignPackage*> waiting{&package};
  while (!waiting.empty()) {
    TAVDesignPackage& current = *waiting.back();
    waiting.pop_back();
    current.nativeId = "";
    for (TAVModelElement* element : current.getModelElements()) {
      if (auto* dimension = tav::as<TAVDimension>(element))
        for (TAVFeature& feature : dimension->features) feature.nativeId = "";
      if (tav::is<TAVDimension>(*element) || tav::is<TAVCube>(*element)) element->nativeId = "";
    }
    for (TAVPackage* child : current.getChildPackages())
      if (auto* design = tav::as<TAVDesignPackage>(child)) waiting.push_back(design);
  }
}

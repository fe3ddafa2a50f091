#include "reader/run/import_run.h"

#include "reader/run/vocabulary.h"

namespace tav {

void setNameDescription(const TAVDOMElement& element, TAVElement& object) {
  object.setName(element.getFirstElementValue(xmla::kName));
  object.description = element.getFirstElementValue(xmla::kDescription);
}

void setNameIdDescription(const TAVDOMElement& element, TAVElement& object) {
  setNameDescription(element, object);
  object.nativeId = element.getFirstElementValue(xmla::kId);
}

}  // namespace tav

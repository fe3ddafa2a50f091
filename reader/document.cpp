#include "reader/document.h"

#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {

const TAVDOMElement* findDatabase(const TAVDOMElement& root) {
  const TAVDOMElement* command = &root;
  if (root.getTagName() == kBatch)
    command = root.getFirstElement(kAlter);
  else if (root.getTagName() != kCreate)
    return &root;
  const TAVDOMElement* definition = command ? command->getFirstElement(kObjectDefinition) : nullptr;
  return definition ? definition->getFirstElement(kDatabase) : nullptr;
}

}  // namespace tav

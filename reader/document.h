#pragma once

#include "framework/dom/dom.h"

namespace tav {

/// The element that defines the database; null when the document holds none. The forms are, by the root:
/// Create/ObjectDefinition/Database, Batch/Alter/ObjectDefinition/Database with the first of each, and any
/// other root, which is taken for the database whatever its name.
const TAVDOMElement* findDatabase(const TAVDOMElement& root);

}  // namespace tav

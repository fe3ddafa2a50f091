#pragma once

#include "dimensions/attribute.h"

namespace tav {

/// Makes a hierarchy of the dimension with its levels; it is the dimension's default until the next is made.
void importHierarchy(ImportRun& run, const TAVDOMElement& element, TAVDimension& dimension,
                     const AttributeRecords& attributes);

}  // namespace tav

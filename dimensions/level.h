#pragma once

#include "dimensions/attribute.h"

namespace tav {

/// The level of a Level element: a new one, or that of the same name which another hierarchy of the dimension
/// has made. Null for another element.
TAVLevel* importLevel(ImportRun& run, const TAVDOMElement& element, TAVDimension& dimension,
                      const AttributeRecords& attributes);

}  // namespace tav

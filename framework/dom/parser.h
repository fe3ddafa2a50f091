#pragma once

#include <string_view>

#include "framework/dom/byte_source.h"
#include "framework/dom/tree_builder.h"
#include "framework/std/log.h"

namespace tav {

/// The root of the tree of one document: plain ones are scanned, and all else is left to Expat. Warnings go
/// to the log, which may be null.
const TAVDOMElement* parseDocument(ByteSource& source, TreeBuilder tree, TAVLog* log,
                                   std::string_view document);

}  // namespace tav

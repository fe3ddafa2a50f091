#pragma once

#include <memory>

#include "framework/details/details.h"
#include "framework/dom/dom.h"
#include "framework/serialization/loading.h"

namespace tav {

/// Reads the details of a saved document, whose models' objects are `objects`. Throws as loadDocument() does;
/// `name` stands for the document in messages.
std::unique_ptr<Details> readDetails(const TAVDOMElement& content, const LoadedObjects& objects,
                                     std::string_view name);

}  // namespace tav

#pragma once

#include <string>
#include <string_view>

#include "framework/dom/dom.h"

namespace tav::test {

/// A tree as text: a line for each element with its line number, its tag, the namespaces, the attributes and
/// the value; children are indented. Bytes that are not ASCII are escaped.
std::string dump(const TAVDOMElement& root);

/// The tree of a document called "doc" as text, or the message of the exception.
std::string parseAndDump(std::string_view document);

}  // namespace tav::test

#pragma once

#include <string>
#include <string_view>

namespace tav::test {

/// Whether expatReading() can stand for it: in UTF-8 and without a document type.
bool isPlainDocument(std::string_view document);

/// What Expat itself makes of such a document: its elements as a dumped tree has them, without namespaces, or
/// the place and the kind of its fault.
std::string expatReading(std::string_view document);

/// The same of ours.
std::string ourReading(std::string_view document);

}  // namespace tav::test

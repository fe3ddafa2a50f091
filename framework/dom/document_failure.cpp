#include "framework/dom/document_failure.h"

#include <string>

#include "framework/std/exception.h"

namespace tav {

void failForDocument(std::string_view document, std::string_view cause) {
  fail("TAVDOM_F0001", TAVString(document) + ": " + TAVString(cause));
}

void failAt(std::string_view document, DocumentPlace place, std::string_view cause) {
  failForDocument(TAVString(document) + ":" + std::to_string(place.line) + ":" + std::to_string(place.column),
                  cause);
}

}  // namespace tav

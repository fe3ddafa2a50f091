#include "reader/elements/annotations.h"

#include <algorithm>
#include <array>

#include "reader/run/vocabulary.h"

namespace tav {
namespace {

constexpr std::string_view kDesignerAddress = "http://schemas.microsoft.com/DataWarehouse/Designer/1.0:";
/// The beginnings of the names of annotations about drawings.
constexpr std::array<std::string_view, 8> kBeginnings{
    "Diagram",       "ARDiagram", "UseDiagram",  "ShowFriendlyNames", "ShowRelationshipNames",
    "CurrentLayout", "Layouts",   "ReportLayout"};

bool isOfDrawing(std::string_view name) {
  const std::string_view own = annotationName(name);
  return own.size() < name.size() &&
         std::any_of(kBeginnings.begin(), kBeginnings.end(),
                     [&](std::string_view beginning) { return own.starts_with(beginning); });
}

/// Designers write the name first. Where it stands elsewhere the drawing is kept, and passed over all the
/// same.
bool isDrawing(const ElementsAround& around) {
  return around.parent.local == "Annotation" && around.grandparent.local == "Annotations" &&
         !around.before.empty() && around.before.front().getTagName() == xmla::kName &&
         isOfDrawing(around.before.front().getValue());
}

}  // namespace

const UnkeptContent kDrawings{"Value", &isDrawing};

std::string_view annotationName(std::string_view name) {
  if (name.starts_with(kDesignerAddress)) name.remove_prefix(kDesignerAddress.size());
  return name;
}

bool isDesignerLayout(const TAVDOMElement& annotation) {
  return isOfDrawing(annotation.getFirstElementValue(xmla::kName));
}

}  // namespace tav

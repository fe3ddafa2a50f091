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

bool isDrawing(const ElementsAround& around) {
  if (around.parent.local != "Annotation" || around.grandparent.local != "Annotations") return false;
  const auto name =
      std::find_if(around.before.begin(), around.before.end(),
                   [](const TAVDOMElement& element) { return element.getTagName() == xmla::kName; });
  return name != around.before.end() && isOfDrawing(name->getValue());
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

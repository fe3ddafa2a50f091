#include "reader/elements/annotations.h"

#include <algorithm>
#include <array>

#include "reader/run/vocabulary.h"

namespace tav {
namespace {

constexpr std::string_view kDesignerAddress = "http://schemas.microsoft.com/DataWarehouse/Designer/1.0:";
/// The beginnings of the names of annotations about drawings.
constexpr std::array<std::string_view, 8> kDrawings{
    "Diagram",       "ARDiagram", "UseDiagram",  "ShowFriendlyNames", "ShowRelationshipNames",
    "CurrentLayout", "Layouts",   "ReportLayout"};

}  // namespace

std::string_view annotationName(std::string_view name) {
  if (name.starts_with(kDesignerAddress)) name.remove_prefix(kDesignerAddress.size());
  return name;
}

bool isDesignerLayout(const TAVDOMElement& annotation) {
  const std::string_view name = annotation.getFirstElementValue(xmla::kName);
  const std::string_view own = annotationName(name);
  return own.size() < name.size() &&
         std::any_of(kDrawings.begin(), kDrawings.end(),
                     [&](std::string_view drawing) { return own.starts_with(drawing); });
}

}  // namespace tav

#include "reader/elements/element_shape.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

constexpr std::string_view kLanguage = "Language";

/// Types that what an element holds tells as well, or that it has where nothing is said.
constexpr std::array<std::string_view, 12> kPlainTypes{"ColumnBinding",
                                                       "CubeAttributeBinding",
                                                       "DataSourceViewBinding",
                                                       "DsvTableBinding",
                                                       "InheritedBinding",
                                                       "MeasureBinding",
                                                       "ProactiveCachingInheritedBinding",
                                                       "QueryBinding",
                                                       "RegularMeasureGroupDimension",
                                                       "RelationalDataSource",
                                                       "RowBinding",
                                                       "ScalarMiningStructureColumn"};

}  // namespace

std::string_view typeOf(const TAVDOMElement& element) {
  if (element.getAttributes().empty()) return {};
  const std::string_view type = element.getAttributeNS(kSchemaInstance, kTypeAttribute);
  const bool isPlain = std::find(kPlainTypes.begin(), kPlainTypes.end(), type) != kPlainTypes.end();
  return isPlain ? std::string_view() : type;
}

bool isLeaf(const TAVDOMElement& element) {
  return element.getElementCount() == 0;
}

bool isReference(const TAVDOMElement& element) {
  const std::string_view tag = element.getLocalName();
  return tag.size() > kId.size() && tag.ends_with(kId);
}

bool isList(const TAVDOMElement& element) {
  if (isLeaf(element)) return false;
  const std::string_view list = element.getLocalName();
  const std::string_view part = element.getElement(0)->getLocalName();
  return list.size() > part.size() && list.starts_with(part.substr(0, part.size() - 1));
}

bool isLanguage(const TAVDOMElement& label) {
  return label.getLocalName() == kLanguage;
}

const TAVDOMElement* findLabel(const TAVDOMElement& element) {
  const TAVDOMElement* label = nullptr;
  for (const TAVDOMElement& child : element.getElements()) {
    if (!isLeaf(child)) continue;
    if (isLanguage(child) || isReference(child)) return &child;
    const std::string_view tag = child.getLocalName();
    if (tag == kName || (tag == kId && !label)) label = &child;
  }
  return label;
}

bool areEqual(const TAVDOMElement& a, const TAVDOMElement& b) {
  std::vector<std::pair<const TAVDOMElement*, const TAVDOMElement*>> pairs;
  pairs.reserve(16);  // bindings are small
  pairs.emplace_back(&a, &b);
  while (!pairs.empty()) {
    const auto [first, second] = pairs.back();
    pairs.pop_back();
    if (first->getLocalName() != second->getLocalName() || first->getValue() != second->getValue() ||
        first->getElementCount() != second->getElementCount() || typeOf(*first) != typeOf(*second))
      return false;
    for (std::int32_t i = 0; i < first->getElementCount(); ++i)
      pairs.emplace_back(first->getElement(i), second->getElement(i));
  }
  return true;
}

}  // namespace tav

#pragma once

// What the analyzers share that resolve names with a `getElementByName` of their own.

#include "framework/expression/analyzer.h"

namespace tav {

/// Resolves a reference of an expression's text.
template <class Analyzer>
void resolveReference(Analyzer& analyzer, const TAVElementNode& node, const TAVVector& scope,
                      TAVVector& result) {
  const int count = node.getElementNamePartCount();
  const TAVElementNamePart* last = node.getElementNamePartByPosition(count - 1);
  analyzer.getElementByName(node.getName(), last ? last->getName() : TAVString::getEmptyString(), count,
                            node.getExpectedElementType(), TAVArgumentType(TAVArgumentType::kSource), scope,
                            result);
}

/// The one feature that a name means as a destination in a classifier; null when there is none, or several.
template <class Analyzer>
TAVFeature* resolveDestination(Analyzer& analyzer, TAVClassifier* classifier, const TAVString& name) {
  TAVVector scope;
  scope.add(classifier, true, nullptr);
  TAVVector result;
  analyzer.getElementByName(name, name, 1, kClassRanges[classId<TAVFeature>].code,
                            TAVArgumentType(TAVArgumentType::kDestination), scope, result);
  return result.getCount() == 1 ? static_cast<TAVFeature*>(result[0]) : nullptr;
}

}  // namespace tav

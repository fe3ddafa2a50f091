#pragma once

// The one place that writes lineage into a model. Lineage has two stories: a classifier map says which
// classifiers feed a classifier, its feature maps which features feed each feature, with the expression where
// there is one. A source stands in a map once, however often it is named, and its classifier in the
// classifier map once.

#include <string_view>

#include "framework/api.h"
#include "framework/model/class_list.h"

namespace tav {

/// The map whose destination the classifier is; made when there is none yet.
TAV_API TAVClassifierMap& classifierMapOf(TAVClassifier& destination);

/// The map that computes a feature of a classifier; made in the classifier's own map when there is none yet.
TAV_API TAVFeatureMap& featureMapOf(TAVFeature& destination);

/// A new map for a feature in a classifier map, with the expression that computes the feature.
TAV_API TAVFeatureMap& addFeatureMap(TAVClassifierMap& owner, TAVFeature& destination,
                                     std::string_view operation = {});

TAV_API void addSource(TAVClassifierMap& map, TAVClassifier& source);
/// Adds the source, and the classifier it belongs to as a source of the classifier map.
TAV_API void addSource(TAVFeatureMap& map, TAVFeature& source);

}  // namespace tav

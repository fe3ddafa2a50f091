package KORV.bridges.MicrosoftSqlServerAs.Import.model;

import java.util.Collection;
import java.util.IdentityHashMap;
import java.util.LinkedHashSet;
import java.util.Map;
import java.util.Set;

/** The maps of a model: one a classifier, with a feature map for each feature that has a source. */
public final class LineageMaps {
  private final Map<ModelObject, ModelObject> maps = new IdentityHashMap<>();
  private final Map<ModelObject, Set<ModelObject>> sources = new IdentityHashMap<>();

  /** The operation is empty where the value is taken over as it is. */
  public void link(ModelObject feature, String operation, Collection<ModelObject> features) {
    if (features.isEmpty()) return;
    for (ModelObject source : features) addSource(feature.owner, source.owner);
    ModelObject featureMap = new ModelObject("TAVFeatureMap", "").set("operation", operation);
    featureMap.refer("sourceFeatures", features);
    featureMap.refer("destinationFeature", feature);
    maps.get(feature.owner).add(ModelObject.Role.featureMaps, featureMap);
  }

  /** A classifier that another is made of, also where no single feature is named. */
  public void addSource(ModelObject classifier, ModelObject source) {
    ModelObject map = maps.get(classifier);
    if (map == null) {
      map = classifier.add(ModelObject.Role.classifierMaps, new ModelObject("TAVClassifierMap", ""));
      map.refer("destinationClassifier", classifier);
      maps.put(classifier, map);
      sources.put(classifier, new LinkedHashSet<>());
    }
    if (sources.get(classifier).add(source)) map.refer("sourceClassifiers", source);
  }
}

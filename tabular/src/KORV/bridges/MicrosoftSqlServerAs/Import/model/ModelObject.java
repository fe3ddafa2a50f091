package KORV.bridges.MicrosoftSqlServerAs.Import.model;

import java.util.ArrayList;
import java.util.Collection;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** An object of the metadata model: a class, attributes, references and the objects that it contains. */
public final class ModelObject extends Subject {
  /** The roles in the order in which the model's schema wants them, whatever the class. */
  public enum Role {
    propertyValues,
    synonyms,
    metadataOrigins,
    storeConnections,
    types,
    propertyTypes,
    dataPackages,
    designPackages,
    namespaceElements,
    features,
    classifierMaps,
    hierarchies,
    levels,
    levelKeys,
    hierarchyLevelAssociations,
    cubeDimensionAssociations,
    featureMaps;

    /** All of them; values() would copy. */
    static final List<Role> ALL = List.of(values());
  }

  final String className;
  /** Names and values by turns: an object has few, and there are many objects. */
  private final ArrayList<String> attributes = new ArrayList<>(8);
  private Map<String, List<ModelObject>> references;
  private List<List<ModelObject>> parts;
  private Map<String, Integer> nextNumbers;
  private Map<String, ModelObject> named;
  public ModelObject owner;

  public ModelObject(String className, String name) {
    this.className = className;
    set("name", name);
  }

  public String name() {
    String name = get("name");
    return name == null ? "" : name;
  }

  /** An attribute, null when it has its default. */
  public String get(String attribute) {
    for (int i = 0; i < attributes.size(); i += 2) {
      if (attributes.get(i).equals(attribute)) return attributes.get(i + 1);
    }
    return null;
  }

  /** Names and values by turns. */
  List<String> attributes() { return attributes; }

  /** Sets an attribute; the empty text is the default and is left out. */
  public ModelObject set(String attribute, String value) {
    int i = 0;
    while (i < attributes.size() && !attributes.get(i).equals(attribute)) i += 2;
    boolean known = i < attributes.size();
    if (value == null || value.isEmpty()) {
      if (known) attributes.subList(i, i + 2).clear();
    } else if (known) {
      attributes.set(i + 1, value);
    } else {
      attributes.add(attribute);
      attributes.add(value);
    }
    return this;
  }

  public ModelObject set(String attribute, int value) {
    return set(attribute, value == 0 ? "" : Integer.toString(value));
  }

  public ModelObject set(String attribute, boolean value) { return set(attribute, value ? "true" : ""); }

  public void refer(String reference, ModelObject target) {
    if (references == null) references = new LinkedHashMap<>(2);
    references.computeIfAbsent(reference, r -> new ArrayList<>(1)).add(target);
  }

  public void refer(String reference, Collection<ModelObject> targets) {
    for (ModelObject target : targets) refer(reference, target);
  }

  public Map<String, List<ModelObject>> references() { return references == null ? Map.of() : references; }

  public List<ModelObject> parts(Role role) {
    if (parts == null || parts.size() <= role.ordinal() || parts.get(role.ordinal()) == null)
      return List.of();
    return parts.get(role.ordinal());
  }

  public ModelObject add(Role role, ModelObject part) {
    if (parts == null) parts = new ArrayList<>();
    while (parts.size() <= role.ordinal()) parts.add(null);
    if (parts.get(role.ordinal()) == null) parts.set(role.ordinal(), new ArrayList<>(4));
    parts.get(role.ordinal()).add(part);
    part.owner = this;
    return part;
  }

  /** Adds under a name that no other element or feature added this way has: "Sales", "Sales/2", ... */
  public ModelObject addUnique(Role role, ModelObject part) {
    if (named == null) {
      named = new HashMap<>();
      nextNumbers = new HashMap<>();
    }
    String wanted = part.name();
    String name = wanted;
    for (int n = nextNumbers.getOrDefault(wanted, 2); named.containsKey(name); ++n) {
      name = wanted + "/" + n;
      nextNumbers.put(wanted, n + 1);
    }
    named.put(name, part);
    part.set("name", name);
    return add(role, part);
  }

  /** A feature at its place in its classifier; places are 16 bits wide. */
  public ModelObject addFeature(ModelObject feature) {
    feature.set("position", parts(Role.features).size() & 0xFFFF);
    return addUnique(Role.features, feature);
  }

  /** The names from below the model down to this object. */
  public String path() {
    StringBuilder path = new StringBuilder();
    for (ModelObject at = this; at.owner != null; at = at.owner) path.insert(0, "/" + at.name());
    return path.toString();
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.model;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import java.util.HashMap;
import java.util.Map;
import java.util.Set;

/** The types and user properties of a model, each made once. */
public final class Catalog {
  /** Element type codes of the classes that carry user properties. */
  private static final Map<String, Integer> CODES = Map.ofEntries(Map.entry("TAVStoreModel", 7),
      Map.entry("TAVStoreConnection", 216), Map.entry("TAVCube", 85), Map.entry("TAVDimension", 87),
      Map.entry("TAVLevel", 86), Map.entry("TAVSynonym", 21), Map.entry("TAVMeasure", 97),
      Map.entry("TAVDimensionAttribute", 95), Map.entry("TAVHierarchy", 89));

  /** The framework's type names for the data types of a definition. */
  private static final Map<String, String> TYPES = Map.of("string", "VARCHAR", "int64", "BIGINT", "double",
      "DOUBLE", "decimal", "DECIMAL", "boolean", "BOOLEAN", "dateTime", "TIMESTAMP", "binary", "VARBINARY");
  private static final String UNDEFINED = "undefined";

  private final ModelObject model;
  private final Map<String, ModelObject> baseTypes = new HashMap<>();
  private final Map<String, ModelObject> derivedTypes = new HashMap<>();
  private final Map<String, ModelObject> propertyTypes = new HashMap<>();

  public Catalog(ModelObject model) { this.model = model; }

  /** The type for a definition's data type; an empty or unknown one is undefined. */
  public ModelObject type(String nativeType) {
    String written = nativeType.isEmpty() ? "variant" : nativeType;
    ModelObject known = derivedTypes.get(written);
    if (known != null) return known;
    String name = TYPES.getOrDefault(written, UNDEFINED);
    ModelObject base = baseTypes.get(name);
    if (base == null) {
      base = model.add(ModelObject.Role.types, new ModelObject("TAVBaseType", name).set("dataType", name));
      baseTypes.put(name, base);
    }
    ModelObject type = new ModelObject("TAVDerivedType", name);
    type.set("physicalName", written).set("dataType", name).set("nativeDataType", written);
    type.refer("derivedFromConcreteType", base);
    derivedTypes.put(written, model.add(ModelObject.Role.types, type));
    return type;
  }

  /** Gives an object a user property; an empty value is none. */
  public void property(ModelObject object, String name, String value) {
    if (value.isEmpty()) return;
    String key = object.className + "\n" + name;
    ModelObject type = propertyTypes.get(key);
    if (type == null) {
      type = new ModelObject("TAVPropertyType", name);
      type.set("elementType", CODES.get(object.className))
          .set("group", "User")
          .set("dataType", "SQL_VARCHAR");
      propertyTypes.put(key, model.add(ModelObject.Role.propertyTypes, type));
    }
    ModelObject property = new ModelObject("TAVPropertyValue", "").set("value", value);
    property.refer("propertyType", type);
    object.add(ModelObject.Role.propertyValues, property);
  }

  /** Keeps every member of a definition's object that has no place in the model's object as a property. */
  public void keep(ModelObject object, Json definition, Set<String> placed) throws ImportException {
    Set<String> done = new java.util.HashSet<>(placed);
    for (String name : definition.names) {
      if (!done.add(name)) continue;
      Json value = definition.get(name);
      boolean lines = value.kind == Json.Kind.ARRAY
          && value.values.stream().allMatch(line -> line.kind == Json.Kind.STRING);
      property(object, name, lines ? definition.text(name) : value.display());
    }
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.JsonReader;
import java.util.HashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Set;

/** What the properties of objects are in JSON: their spelling, their types, and where they stand. */
final class TmdlProperties {
  static final int FIRST_LEVEL = 1200;

  /** Properties whose values are names of other objects. */
  private static final Set<String> NAMES = Set.of("column", "sortByColumn", "expressionSource", "queryGroup",
      "relationship", "dataSource", "baseTable", "primaryColumn", "groupByColumn", "associatedColumn");
  private static final Set<String> NUMBERS =
      Set.of("compatibilityLevel", "ordinal", "precedence", "tableDetailPosition", "displayOrdinal",
          "rollingWindowPeriods", "incrementalPeriods", "incrementalPeriodsOffset", "maxConnections", "timeout",
          "maxParallelismPerRefresh", "maxParallelismPerQuery", "alternateSourcePrecedence", "version");
  /** Words that older versions wrote with a capital letter. */
  private static final Set<String> WORDS = Set.of("dataType", "summarizeBy", "mode", "modelPermission",
      "crossFilteringBehavior", "securityFilteringBehavior", "fromCardinality", "toCardinality",
      "joinOnDateBehavior", "alignment", "encodingHint", "metadataPermission", "impersonationMode", "dataView",
      "defaultMode", "hideMembers", "type", "contentType", "timeUnit", "memberType", "summarization",
      "policyType", "rollingWindowGranularity", "incrementalGranularity", "aggregateFunction");
  private static final Set<String> TEXTS = Set.of("description", "displayFolder", "formatString",
      "sourceColumn", "entityName", "schemaName", "caption", "dataCategory", "lineageTag", "sourceLineageTag",
      "sourceProviderType", "expression", "query", "targetExpression", "statusExpression", "trendExpression",
      "formatStringExpression",
      "sourceExpression", "pollingExpression", "connectionString", "account", "password", "provider", "culture",
      "collation", "sourceQueryCulture", "defaultPowerBIDataSourceVersion", "compatibilityMode", "statusGraphic",
      "trendGraphic", "targetFormatString", "targetDescription", "statusDescription", "trendDescription",
      "directLakeBehavior", "resultType", "identityProvider", "memberId", "mAttributes", "kind",
      "filterExpression", "contextExpression", "fromColumn", "toColumn", "defaultHierarchy", "defaultColumn",
      "parameterValuesColumn", "columnOrigin", "baseColumn", "id", "storageLocation", "server", "database",
      "protocol", "path", "url", "name", "refreshBookmark", "granularity", "content", "value", "property");
  private static final Set<String> FLAGS = Set.of("isHidden", "isPrivate", "isActive", "isKey", "isUnique",
      "isNullable", "isAvailableInMdx", "isDefault", "isDefaultLabel", "isDefaultImage", "isNameInferred",
      "isDataTypeInferred", "keepUniqueRows", "showAsVariationsOnly", "discourageImplicitMeasures",
      "relyOnReferentialIntegrity", "excludeFromModelRefresh", "isSimpleMeasure", "includeAll",
      "legacyRedirects", "returnErrorValuesAsNull", "fastCombine", "discourageCompositeModels", "isRemoved",
      "excludeFromAutomaticAggregations", "forceUniqueNames", "retainDataTillForceCalculate");
  /** Members that are objects without a kind of their own. */
  private static final Set<String> OBJECTS = Set.of("dataAccessOptions", "connectionDetails", "address",
      "credential", "options", "authentication", "attributeHierarchy", "automaticAggregationOptions");
  /** References of two steps, and the two members that they are in JSON, in the owner or in an object of it. */
  private static final Map<String, List<String>> PAIRS = Map.of("fromColumn", List.of("fromTable", "fromColumn"),
      "toColumn", List.of("toTable", "toColumn"), "columnOrigin",
      List.of("columnOriginTable", "columnOriginColumn"));
  private static final Map<String, List<String>> PAIR_OBJECTS =
      Map.of("defaultHierarchy", List.of("table", "hierarchy"), "defaultColumn", List.of("table", "column"),
          "parameterValuesColumn", List.of("table", "column"), "baseColumn", List.of("table", "column"));
  private static final Map<String, String> TRANSLATED = Map.of("caption", "translatedCaption", "description",
      "translatedDescription", "displayFolder", "translatedDisplayFolder");
  /** Properties of a partition that JSON has in its source. */
  private static final Set<String> OF_SOURCE =
      Set.of("query", "expression", "dataSource", "entityName", "schemaName", "expressionSource");
  /** Properties that may be given again and again, and the lists that they make. */
  private static final Map<String, String> LISTS =
      Map.of("associatedColumn", "associatedColumns", "column", "columns");

  private static final Map<String, String> SPELLINGS = new HashMap<>();

  static {
    for (Set<String> names : List.of(NAMES, NUMBERS, WORDS, TEXTS, FLAGS, OBJECTS))
      for (String name : names) SPELLINGS.put(name.toLowerCase(Locale.ROOT), name);
  }

  private TmdlProperties() {}

  static boolean isKnown(String word) { return SPELLINGS.containsKey(word.toLowerCase(Locale.ROOT)); }

  /** The property as JSON spells it; what is not known stays as it is. */
  static String spelling(String word) { return SPELLINGS.getOrDefault(word.toLowerCase(Locale.ROOT), word); }

  /** Whether lines below the word may be members of an object of that name. */
  static boolean mayBeObject(String word) {
    return !TmdlKind.isMember(word) && (OBJECTS.contains(word) || !SPELLINGS.containsKey(word.toLowerCase(Locale.ROOT)));
  }

  /** An expression, whose quotes are its own. */
  static boolean isExpression(String property) {
    return property.equals("query") || property.toLowerCase(Locale.ROOT).endsWith("expression");
  }

  /** The object that a property belongs to in JSON. */
  static TmdlObject ownerOf(TmdlObject object, String property, TmdlObject database) {
    if (object.kind == TmdlKind.PARTITION && OF_SOURCE.contains(property))
      return object.part(TmdlKind.SOURCE, "");
    boolean ofDatabase = property.equals("id") || property.equals("compatibilityLevel");
    return object.kind == TmdlKind.MODEL && ofDatabase ? database : object;
  }

  /** Gives an object a property. Null, or what is wrong with it. */
  static String put(TmdlObject object, String property, String value) {
    if (JsonReader.isStamp(property)) return null;
    if (TmdlKind.isMember(property)) return strange(object, property);
    if (PAIRS.containsKey(property) || PAIR_OBJECTS.containsKey(property)) return putPair(object, property, value);
    if (object.kind == TmdlKind.RELATED_COLUMNS && property.equals("groupByColumn")) {
      Json column = Json.structure(Json.Kind.OBJECT);
      column.add("groupingColumn", Json.plain(Json.Kind.STRING, TmdlNames.name(value)));
      return append(object, "groupByColumns", column);
    }
    if (object.kind == TmdlKind.CALENDAR_GROUP && LISTS.containsKey(property))
      return append(object, LISTS.get(property), Json.plain(Json.Kind.STRING, TmdlNames.name(value)));
    boolean translated = object.kind.name().startsWith("TRANSLATED");
    String member = translated ? TRANSLATED.getOrDefault(property, property) : property;
    if (property.equals("compatibilityLevel") && !isLevel(value))
      return "expected a number from " + FIRST_LEVEL + " behind 'compatibilityLevel', found '" + value
          + "'";
    return putOnce(object, member, typed(property, value));
  }

  /** What is wrong with a word that neither a property nor an object of `object` has. */
  static String strange(TmdlObject object, String word) {
    String owner = object.kind.isTop() ? "a file" : object.describe();
    return "expected a property or a kind of object in " + owner + ", found '" + word + "'";
  }

  private static boolean isLevel(String value) {
    return value.matches("[0-9]{1,9}") && Integer.parseInt(value) >= FIRST_LEVEL;
  }

  private static Json typed(String property, String value) {
    if (NAMES.contains(property)) return Json.plain(Json.Kind.STRING, TmdlNames.name(value));
    if (NUMBERS.contains(property) && value.matches("-?[0-9]{1,18}(\\.[0-9]{1,18})?"))
      return Json.plain(Json.Kind.OTHER, value);
    if (WORDS.contains(property)) return Json.plain(Json.Kind.STRING, word(value));
    if (TEXTS.contains(property)) return Json.plain(Json.Kind.STRING, value);
    boolean flag = value.equalsIgnoreCase("true") || value.equalsIgnoreCase("false");
    return Json.plain(flag ? Json.Kind.OTHER : Json.Kind.STRING, flag ? value.toLowerCase(Locale.ROOT) : value);
  }

  /** A word of a fixed list as the current version writes it. */
  static String word(String value) {
    boolean capital = !value.isEmpty() && Character.isUpperCase(value.charAt(0));
    return capital ? Character.toLowerCase(value.charAt(0)) + value.substring(1) : value;
  }

  static String putOnce(TmdlObject object, String member, Json value) {
    if (object.put(member, value)) return null;
    return object.describe() + " has '" + member + "' twice; the first counts";
  }

  private static String putPair(TmdlObject object, String property, String value) {
    List<String> names = TmdlNames.reference(value);
    if (names == null || names.size() != 2)
      return "expected a table and its part behind '" + property + "', as in 'Table Name'.Part; found '" + value
          + "'";
    List<String> members = PAIRS.get(property);
    if (members != null) {
      String fault = putOnce(object, members.get(1), Json.plain(Json.Kind.STRING, names.get(1)));
      if (fault == null) object.put(members.get(0), Json.plain(Json.Kind.STRING, names.get(0)));
      return fault;
    }
    Json pair = Json.structure(Json.Kind.OBJECT);
    for (int i = 0; i < 2; ++i)
      pair.add(PAIR_OBJECTS.get(property).get(i), Json.plain(Json.Kind.STRING, names.get(i)));
    return putOnce(object, property, pair);
  }

  private static String append(TmdlObject object, String member, Json value) {
    if (!object.has(member)) object.put(member, Json.structure(Json.Kind.ARRAY));
    object.json.get(member).values.add(value);
    return null;
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import java.util.EnumMap;
import java.util.HashMap;
import java.util.HashSet;
import java.util.Locale;
import java.util.Map;
import java.util.Set;

/**
 * The kinds of objects: the member that holds them in JSON, the member that their name is, and the member that
 * the text behind "=" is. Which kinds an object may own stands below them: the same word means another kind in
 * another owner.
 */
enum TmdlKind {
  /** What stands in no object: the database, the model, and the parts of the model. */
  ROOT("", Number.ONE, null),
  SCRIPT("", Number.ONE, null),
  DATABASE("", Number.ONE, "name"),
  MODEL("model", Number.ONE, "name"),
  TABLE("tables", Number.MANY, "name"),
  COLUMN("columns", Number.MANY, "name", "expression", Form.EXPRESSION),
  MEASURE("measures", Number.MANY, "name", "expression", Form.EXPRESSION),
  HIERARCHY("hierarchies", Number.MANY, "name"),
  LEVEL("levels", Number.MANY, "name"),
  PARTITION("partitions", Number.MANY, "name", "type", Form.WORD),
  SOURCE("source", Number.ONE, null, "expression", Form.PROPERTY),
  CALCULATION_GROUP("calculationGroup", Number.ONE, null),
  CALCULATION_ITEM("calculationItems", Number.MANY, "name", "expression", Form.EXPRESSION),
  NO_SELECTION("noSelectionExpression", Number.ONE, null, "expression", Form.EXPRESSION),
  MANY_SELECTED("multipleOrEmptySelectionExpression", Number.ONE, null, "expression", Form.EXPRESSION),
  FORMAT_STRING("formatStringDefinition", Number.ONE, null, "expression", Form.EXPRESSION),
  DETAIL_ROWS("detailRowsDefinition", Number.ONE, null, "expression", Form.EXPRESSION),
  DEFAULT_DETAIL_ROWS("defaultDetailRowsDefinition", Number.ONE, null, "expression", Form.EXPRESSION),
  KPI("kpi", Number.ONE, null),
  VARIATION("variations", Number.MANY, "name"),
  RELATED_COLUMNS("relatedColumnDetails", Number.ONE, null),
  ALTERNATE("alternateOf", Number.ONE, null),
  SET("sets", Number.MANY, "name", "expression", Form.EXPRESSION),
  CALENDAR("calendars", Number.MANY, "name"),
  CALENDAR_GROUP("calendarColumnGroups", Number.MANY, null, "timeUnit", Form.WORD),
  REFRESH_POLICY("refreshPolicy", Number.ONE, null),
  RELATIONSHIP("relationships", Number.MANY, "name"),
  ROLE("roles", Number.MANY, "name"),
  TABLE_PERMISSION("tablePermissions", Number.MANY, "name", "filterExpression", Form.EXPRESSION),
  COLUMN_PERMISSION("columnPermissions", Number.MANY, "name", "metadataPermission", Form.WORD),
  MEMBER("members", Number.MANY, "memberName", "memberType", Form.WORD),
  PERSPECTIVE("perspectives", Number.MANY, "name"),
  PERSPECTIVE_TABLE("tables", Number.MANY, "name"),
  PERSPECTIVE_COLUMN("columns", Number.MANY, "name"),
  PERSPECTIVE_MEASURE("measures", Number.MANY, "name"),
  PERSPECTIVE_HIERARCHY("hierarchies", Number.MANY, "name"),
  PERSPECTIVE_SET("sets", Number.MANY, "name"),
  CULTURE("cultures", Number.MANY, "name"),
  LINGUISTIC_METADATA("linguisticMetadata", Number.ONE, null, "content", Form.JSON),
  TRANSLATIONS("translations", Number.ONE, null),
  TRANSLATED_MODEL("model", Number.ONE, "name"),
  TRANSLATED_TABLE("tables", Number.MANY, "name"),
  TRANSLATED_COLUMN("columns", Number.MANY, "name"),
  TRANSLATED_MEASURE("measures", Number.MANY, "name"),
  TRANSLATED_HIERARCHY("hierarchies", Number.MANY, "name"),
  TRANSLATED_LEVEL("levels", Number.MANY, "name"),
  TRANSLATED_SET("sets", Number.MANY, "name"),
  TRANSLATED_PERSPECTIVE("perspectives", Number.MANY, "name"),
  EXPRESSION("expressions", Number.MANY, "name", "expression", Form.EXPRESSION),
  FUNCTION("functions", Number.MANY, "name", "expression", Form.EXPRESSION),
  DATA_SOURCE("dataSources", Number.MANY, "name", "type", Form.WORD),
  QUERY_GROUP("queryGroups", Number.MANY, "folder"),
  EXCLUDED_ARTIFACT("excludedArtifacts", Number.MANY, "name"),
  BINDING("bindingInfoCollection", Number.MANY, "name", "type", Form.WORD),
  ANNOTATION("annotations", Number.MANY, "name", "value", Form.TEXT),
  EXTENDED_PROPERTY("extendedProperties", Number.MANY, "name", "value", Form.JSON),
  CHANGED_PROPERTY("changedProperties", Number.MANY, null, "property", Form.TEXT),
  /** An object that is a member of its owner and has no kind of its own: an address, a credential. */
  NESTED("", Number.ONE, null);

  enum Number { ONE, MANY }

  /** What stands behind "=". */
  enum Form {
    NONE,
    /** An expression, which cannot be missing; below the line it stands two levels deeper. */
    EXPRESSION,
    /** An expression that may stand one level deeper, as those of properties do. */
    PROPERTY,
    TEXT,
    JSON,
    WORD
  }

  final String member;
  final Number number;
  /** Null when the kind has no name. */
  final String nameMember;
  final String defaultMember;
  final Form form;

  TmdlKind(String member, Number number, String nameMember) {
    this(member, number, nameMember, null, Form.NONE);
  }

  TmdlKind(String member, Number number, String nameMember, String defaultMember, Form form) {
    this.member = member;
    this.number = number;
    this.nameMember = nameMember;
    this.defaultMember = defaultMember;
    this.form = form;
  }

  private static final Map<TmdlKind, Map<String, TmdlKind>> OWNED = new EnumMap<>(TmdlKind.class);
  private static final Set<String> MEMBERS = new HashSet<>();

  private void owns(Object... wordsAndKinds) {
    Map<String, TmdlKind> owned = OWNED.get(this);
    for (int i = 0; i < wordsAndKinds.length; i += 2)
      owned.put(((String) wordsAndKinds[i]).toLowerCase(Locale.ROOT), (TmdlKind) wordsAndKinds[i + 1]);
  }

  static {
    for (TmdlKind kind : values()) {
      Map<String, TmdlKind> owned = new HashMap<>();
      owned.put("annotation", ANNOTATION);
      owned.put("extendedproperty", EXTENDED_PROPERTY);
      owned.put("changedproperty", CHANGED_PROPERTY);
      OWNED.put(kind, owned);
      MEMBERS.add(kind.member);
    }
    MODEL.owns("table", TABLE, "relationship", RELATIONSHIP, "role", ROLE, "culture", CULTURE, "cultureInfo",
        CULTURE, "perspective", PERSPECTIVE, "expression", EXPRESSION, "function", FUNCTION, "dataSource",
        DATA_SOURCE, "queryGroup", QUERY_GROUP, "excludedArtifact", EXCLUDED_ARTIFACT, "bindingInfo", BINDING);
    for (TmdlKind top : new TmdlKind[] {ROOT, SCRIPT}) {
      OWNED.get(top).putAll(OWNED.get(MODEL));
      top.owns("database", DATABASE, "model", MODEL, "createOrReplace", SCRIPT);
    }
    DATABASE.owns("model", MODEL);
    TABLE.owns("column", COLUMN, "measure", MEASURE, "hierarchy", HIERARCHY, "partition", PARTITION,
        "calculationGroup", CALCULATION_GROUP, "defaultDetailRowsDefinition", DEFAULT_DETAIL_ROWS, "set", SET,
        "calendar", CALENDAR, "refreshPolicy", REFRESH_POLICY);
    COLUMN.owns("variation", VARIATION, "relatedColumnDetails", RELATED_COLUMNS, "alternateOf", ALTERNATE);
    MEASURE.owns("kpi", KPI, "formatStringDefinition", FORMAT_STRING, "detailRowsDefinition", DETAIL_ROWS);
    HIERARCHY.owns("level", LEVEL);
    PARTITION.owns("source", SOURCE);
    CALCULATION_GROUP.owns("calculationItem", CALCULATION_ITEM, "noSelectionExpression", NO_SELECTION,
        "multipleOrEmptySelectionExpression", MANY_SELECTED);
    for (TmdlKind formatted : new TmdlKind[] {CALCULATION_ITEM, NO_SELECTION, MANY_SELECTED})
      formatted.owns("formatStringDefinition", FORMAT_STRING);
    CALENDAR.owns("calendarColumnGroup", CALENDAR_GROUP);
    ROLE.owns("tablePermission", TABLE_PERMISSION, "member", MEMBER);
    TABLE_PERMISSION.owns("columnPermission", COLUMN_PERMISSION);
    PERSPECTIVE.owns("perspectiveTable", PERSPECTIVE_TABLE);
    PERSPECTIVE_TABLE.owns("perspectiveColumn", PERSPECTIVE_COLUMN, "perspectiveMeasure", PERSPECTIVE_MEASURE,
        "perspectiveHierarchy", PERSPECTIVE_HIERARCHY, "perspectiveSet", PERSPECTIVE_SET);
    CULTURE.owns("translations", TRANSLATIONS, "linguisticMetadata", LINGUISTIC_METADATA);
    TRANSLATIONS.owns("model", TRANSLATED_MODEL);
    TRANSLATED_MODEL.owns("table", TRANSLATED_TABLE, "perspective", TRANSLATED_PERSPECTIVE);
    TRANSLATED_TABLE.owns("column", TRANSLATED_COLUMN, "measure", TRANSLATED_MEASURE, "hierarchy",
        TRANSLATED_HIERARCHY, "set", TRANSLATED_SET);
    TRANSLATED_HIERARCHY.owns("level", TRANSLATED_LEVEL);
  }

  /** The kind that a word means in an owner of this kind; null when it means none. */
  TmdlKind owned(String word) { return OWNED.get(this).get(word.toLowerCase(Locale.ROOT)); }

  /** Whether the parts of a model stand directly in this. */
  boolean isTop() { return this == ROOT || this == SCRIPT; }

  /** Whether the word is the member of some kind of object, which no property may be. */
  static boolean isMember(String word) { return MEMBERS.contains(word); }

  /** How the kind is called in messages. */
  String describe() { return name().toLowerCase(Locale.ROOT).replace('_', ' '); }
}

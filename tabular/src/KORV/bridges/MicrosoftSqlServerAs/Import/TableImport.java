package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxResolver;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.MContext;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.MQuery;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.MSource;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.Origin;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.Relation;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.SourceAddress;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Catalog;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Labels;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.LineageMaps;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import java.util.ArrayList;
import java.util.Collection;
import java.util.Comparator;
import java.util.HashMap;
import java.util.IdentityHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Set;

/** Tables as dimensions: columns, hierarchies, and where their data comes from. */
final class TableImport {
  private static final Set<String> TABLE_PLACED =
      Set.of("name", "description", "columns", "measures", "hierarchies");
  private static final Set<String> COLUMN_PLACED =
      Set.of("name", "description", "dataType", "type", "sourceColumn");
  private static final Set<String> HIERARCHY_PLACED = Set.of("name", "description", "levels");
  private static final Set<String> LEVEL_PLACED = Set.of("name", "description", "column", "ordinal");
  private static final Map<String, String> KINDS =
      Map.of("calculated", Labels.CALCULATED_COLUMN, "calculatedTableColumn", Labels.CALCULATED_TABLE_COLUMN);

  /** A table of the definition with what was made of it. */
  record Made(Json definition, ModelObject dimension, DaxResolver.Table names, String expression) {}

  private record Column(Made table, Json definition, ModelObject attribute) {}

  private final Json model;
  private final ModelObject folder;
  private final PhysicalLayer physical;
  private final Catalog catalog;
  private final LineageMaps maps;
  private final MessageOutput messages;
  private final Map<String, String> sharedExpressions = new HashMap<>();
  /** The queries of tables that have just one. */
  private final Map<String, String> tableQueries = new HashMap<>();
  private final QueryContext context = new QueryContext();
  final MQuery.Reader queries = new MQuery.Reader(context);
  /** The cubes that shared expressions open in other models. */
  private final Map<String, Optional<MSource>> cubesElsewhere = new HashMap<>();
  private final List<Column> computed = new ArrayList<>();
  /** What each partition and refresh policy reads, and what expressions name; null without details. */
  private final Map<Json, Set<ModelObject>> readings;
  private final DaxDetails expressions;
  final DaxResolver resolver = new DaxResolver(this::measureElsewhere);
  final List<Made> tables = new ArrayList<>();

  /** `details` is null where nobody asks for them. */
  TableImport(Json model, ModelObject folder, PhysicalLayer physical, Catalog catalog, LineageMaps maps,
      MessageOutput messages, Details details) {
    this.model = model;
    this.folder = folder;
    this.physical = physical;
    this.catalog = catalog;
    this.maps = maps;
    this.messages = messages;
    readings = details == null ? null : new IdentityHashMap<>();
    expressions = details == null ? null : new DaxDetails(resolver, details);
  }

  /** Null without details. */
  DaxDetails expressions() { return expressions; }

  /** The tables of the database that a partition or refresh policy reads. */
  Set<ModelObject> readingOf(Json partition) { return readings.getOrDefault(partition, Set.of()); }

  /** Whether a table is filled by a query that others can name. */
  boolean isQuery(String table) { return tableQueries.containsKey(table); }

  List<ModelObject> dimensions() { return tables.stream().map(Made::dimension).toList(); }

  void importTables() throws ImportException {
    for (Json shared : model.objects("expressions"))
      sharedExpressions.putIfAbsent(shared.text("name"), shared.text("expression"));
    for (Json function : model.objects("functions"))
      resolver.addFunction(function.text("name"), function.text("expression"));
    for (Json table : model.objects("tables")) {
      List<Json> partitions = table.objects("partitions");
      Json source = partitions.size() == 1 ? partitions.get(0).object("source") : null;
      if (source != null && source.text("type").equals("m"))
        tableQueries.putIfAbsent(table.text("name"), source.text("expression"));
    }
    for (Json table : model.objects("tables")) {
      messages.status("QVT_SSXMLA_S0009", "Importing dimension '" + table.text("name") + "' ...");
      importTable(table);
    }
  }

  private void importTable(Json definition) throws ImportException {
    String name = definition.text("name");
    ModelObject dimension = new ModelObject("TAVDimension", name).set("nativeType", Labels.DIMENSION);
    dimension.set("description", definition.text("description"));
    dimension.set("dimensionType", definition.text("dataCategory").equals("Time") ? 1 : 2);
    folder.addUnique(ModelObject.Role.namespaceElements, dimension);
    if (resolver.findTable(name) != null) warnSameName("table", name, folder);
    catalog.keep(dimension, definition, TABLE_PLACED);
    List<PhysicalLayer.Source> sources = new ArrayList<>();
    String expression = readPartitions(definition, dimension, sources);
    Made made = new Made(definition, dimension, resolver.addTable(name, dimension), expression);
    tables.add(made);
    for (Json column : definition.objects("columns")) {
      if (!column.text("type").equals("rowNumber")) importColumn(made, column, sources);
    }
    for (Json calendar : definition.objects("calendars"))
      resolver.addCalendar(calendar.text("name"), made.names);
    reportOpen(sources, dimension);
    physical.linkQueries(sources);
    for (Json hierarchy : definition.objects("hierarchies")) importHierarchy(made, hierarchy);
  }

  void warnSameName(String kind, String name, ModelObject owner) {
    messages.warning("TAVTAB_W0001",
        "Two " + kind + "s of '" + owner.path() + "' are called '" + name + "': expressions mean the first");
  }

  /** The DAX expression of a calculated table, or empty; other partitions go into `sources`. */
  private String readPartitions(Json definition, ModelObject dimension, List<PhysicalLayer.Source> sources)
      throws ImportException {
    List<Json> partitions = definition.objects("partitions");
    String expression = "";
    boolean ranges = false;
    for (Json partition : partitions) {
      Json source = partition.object("source");
      String name = partitions.size() == 1 || partition.text("name").isEmpty() ? dimension.name()
                                                                               : partition.text("name");
      int before = sources.size();
      switch (source.text("type")) {
        case "calculated" -> expression = source.text("expression");
        case "m" -> addQuery(sources, name, source.text("expression"), dimension);
        case "entity" -> addEntity(sources, name, source, dimension);
        case "", "query" -> addText(sources, name, source, dimension);
        case "policyRange" -> ranges = true;
        default -> {
        }
      }
      if (readings != null && sources.size() > before) readings.put(partition, sources.get(before).read());
    }
    // Partitions of an incremental refresh read what their policy says, each a range of it.
    if (ranges || partitions.isEmpty()) {
      Json policy = definition.object("refreshPolicy");
      int before = sources.size();
      addQuery(sources, dimension.name(), policy.text("sourceExpression"), dimension);
      if (readings != null && sources.size() > before) readings.put(policy, sources.get(before).read());
    }
    if (!expression.isEmpty()) catalog.property(dimension, "expression", expression);
    return expression;
  }

  private void addQuery(List<PhysicalLayer.Source> sources, String name, String text, ModelObject dimension) {
    if (text.isBlank()) return;
    MQuery.Reading reading = queries.read(text);
    if (reading.fault() != null) warnQuery(name, dimension, reading.fault());
    Relation relation = reading.relation();
    String connection = relation == null ? "" : relation.connection();
    if (reading.inline()) connection = physical.inlineConnection();
    boolean told = reading.fault() != null || reading.inline();
    sources.add(PhysicalLayer.Source.of(connection, relation, name, text, !told, noReading()));
  }

  private Set<ModelObject> noReading() {
    return readings == null ? null : new LinkedHashSet<>();
  }

  private void warnQuery(String name, ModelObject dimension, String fault) {
    messages.warning("TAVTAB_W0002",
        "Query '" + name + "' of '" + dimension.path() + "' is not understood in full: " + fault);
  }

  /** A column without sources is told of, also where no step is to blame for it. */
  private void reportOpen(List<PhysicalLayer.Source> sources, ModelObject dimension) {
    for (PhysicalLayer.Source source : sources) {
      if (source.open() == null || source.open().isEmpty()) continue;
      warnQuery(source.name(), dimension,
          "it does not tell where these columns come from: '" + String.join("', '", source.open()) + "'");
    }
  }

  private void addText(List<PhysicalLayer.Source> sources, String name, Json source, ModelObject dimension)
      throws ImportException {
    String text = source.text("query");
    if (text.isBlank()) return;
    String dataSource = dataSource(name, source, dimension);
    Relation relation = Relation.ofTable(Origin.Table.ofQuery(dataSource, text));
    sources.add(PhysicalLayer.Source.of(dataSource, relation, name, text, false, noReading()));
  }

  /** The key of the data source that a partition names; the warning is given where there is none. */
  private String dataSource(String name, Json source, ModelObject dimension) throws ImportException {
    String dataSource = source.text("dataSource");
    if (dataSource.isEmpty() || physical.hasDataSource(dataSource)) return dataSource;
    warnMissing(name, dimension, "data source", dataSource);
    return "";
  }

  private void warnMissing(String name, ModelObject dimension, String kind, String missing) {
    messages.warning("TAVTAB_W0003",
        "Partition '" + name + "' of '" + dimension.path() + "' reads the " + kind + " '" + missing
            + "', which the definition does not have");
  }

  private void addEntity(List<PhysicalLayer.Source> sources, String name, Json source, ModelObject dimension)
      throws ImportException {
    String entity = source.text("entityName");
    String schema = source.text("schemaName");
    String shared = source.text("expressionSource");
    if (entity.isEmpty()) return;
    if (shared.isEmpty()) {
      String dataSource = dataSource(name, source, dimension);
      Relation table = Relation.ofTable(Origin.Table.named(dataSource, schema, entity));
      sources.add(PhysicalLayer.Source.of(dataSource, table, name, entity, false, noReading()));
      return;
    }
    if (!sharedExpressions.containsKey(shared)) {
      warnMissing(name, dimension, "expression", shared);
      return;
    }
    String key = (schema.isEmpty() ? "" : "Schema=" + quoted(schema) + ",") + "Item=" + quoted(entity);
    addQuery(sources, name, "#" + quoted(shared) + "{[" + key + "]}[Data]", dimension);
  }

  private ModelObject measureElsewhere(String expression, String name) {
    Optional<MSource> cube = cubesElsewhere.computeIfAbsent(expression, this::cubeElsewhere);
    if (cube.isEmpty()) return null;
    return physical.measure(cube.get().connection(context), cube.get().schema(), name);
  }

  private Optional<MSource> cubeElsewhere(String expression) {
    String text = sharedExpressions.getOrDefault(expression, "");
    return Optional.ofNullable(queries.source(text)).filter(MSource::isCube);
  }

  private static String quoted(String text) { return "\"" + text.replace("\"", "\"\"") + "\""; }

  private final class QueryContext implements MContext {
    @Override
    public String sharedExpression(String name) {
      return sharedExpressions.get(name);
    }

    @Override
    public String tableQuery(String table) {
      return tableQueries.get(table);
    }

    @Override
    public MSource dataSource(String name) {
      return physical.dataSource(name);
    }

    @Override
    public String connection(SourceAddress address) {
      return physical.openConnection(address);
    }

    @Override
    public boolean isFile(String connection) {
      return physical.isFile(connection);
    }
  }

  private void importColumn(Made table, Json definition, List<PhysicalLayer.Source> sources)
      throws ImportException {
    String name = definition.text("name");
    ModelObject attribute = new ModelObject("TAVDimensionAttribute", name);
    String sourceColumn = definition.text("sourceColumn");
    attribute.set("description", definition.text("description")).set("physicalName", sourceColumn);
    attribute.set("nativeType", KINDS.get(definition.text("type")));
    ModelObject type = catalog.type(definition.text("dataType"));
    attribute.refer("type", type);
    table.dimension.addFeature(attribute);
    if (resolver.findColumn(table.names, name) != null) warnSameName("column", name, table.dimension);
    resolver.addColumn(table.names, name, attribute);
    catalog.keep(attribute, definition, COLUMN_PLACED);
    if (KINDS.containsKey(definition.text("type"))) {
      computed.add(new Column(table, definition, attribute));
    } else if (!sourceColumn.isEmpty()) {
      Set<ModelObject> columns = new LinkedHashSet<>();
      for (PhysicalLayer.Source source : sources)
        columns.addAll(physical.columnsFor(source, sourceColumn, type));
      maps.link(attribute, "", columns);
    }
  }

  private void importHierarchy(Made table, Json definition) throws ImportException {
    ModelObject hierarchy = new ModelObject("TAVHierarchy", definition.text("name"));
    hierarchy.set("description", definition.text("description"));
    catalog.keep(hierarchy, definition, HIERARCHY_PLACED);
    List<Json> levels = new ArrayList<>(definition.objects("levels"));
    Map<Json, Integer> places = new HashMap<>();
    for (int i = 0; i < levels.size(); ++i) places.put(levels.get(i), ordinal(levels.get(i), i));
    levels.sort(Comparator.comparing(places::get));
    ModelObject association = null;
    for (Json definitionOfLevel : levels) {
      association =
          new ModelObject("TAVHierarchyLevelAssociation", "").set("position", places.get(definitionOfLevel));
      association.refer("level", importLevel(table, definitionOfLevel));
      if (hierarchy.references().isEmpty()) hierarchy.refer("topHierarchyLevelAssociation", association);
      hierarchy.add(ModelObject.Role.hierarchyLevelAssociations, association);
    }
    if (association != null) hierarchy.refer("bottomHierarchyLevelAssociation", association);
    table.dimension.add(ModelObject.Role.hierarchies, hierarchy);
  }

  private static int ordinal(Json level, int place) throws ImportException {
    String text = level.text("ordinal");
    return text.matches("[0-9]{1,4}") ? Integer.parseInt(text) : place;
  }

  private ModelObject importLevel(Made table, Json definition) throws ImportException {
    String column = definition.text("column");
    ModelObject level = new ModelObject("TAVLevel", definition.text("name"));
    level.set("description", definition.text("description"));
    catalog.keep(level, definition, LEVEL_PLACED);
    ModelObject attribute = resolver.findColumn(table.names, column);
    if (attribute != null) {
      ModelObject levelAttribute = new ModelObject("TAVLevelAttribute", attribute.name());
      levelAttribute.refer("dimensionAttribute", attribute);
      level.addFeature(levelAttribute);
      level.refer("defaultLevelAttribute", levelAttribute);
      ModelObject key = level.add(ModelObject.Role.levelKeys, new ModelObject("TAVLevelKey", ""));
      key.refer("levelAttributes", levelAttribute);
    }
    return table.dimension.add(ModelObject.Role.levels, level);
  }

  /** Once all tables, columns and measures have their names: what expressions lead to. */
  void resolveExpressions() throws ImportException {
    Map<Made, DaxResolver.TableLineage> tableExpressions = new HashMap<>();
    for (Made table : tables) {
      if (!table.expression.isEmpty()) tableExpressions.put(table, resolveTable(table));
      if (table.definition.has("calculationGroup")) resolveItems(table);
    }
    for (Column column : computed) {
      if (column.definition.text("type").equals("calculated")) {
        resolveColumn(column);
      } else if (tableExpressions.containsKey(column.table)) {
        resolveTableColumn(column, tableExpressions.get(column.table));
      }
    }
  }

  private void resolveColumn(Column column) throws ImportException {
    String text = column.definition.text("expression");
    DaxLineage lineage = resolver.resolveColumn(text, column.table.names);
    report(lineage, column.attribute, column.attribute.path());
    catalog.property(column.attribute, "unresolved", String.join("\n", lineage.unresolved));
    link(column.attribute, text, lineage);
  }

  /** What the items of a calculation group name belongs to the column by which one of them is chosen. */
  private void resolveItems(Made table) throws ImportException {
    Json group = table.definition.object("calculationGroup");
    StringBuilder operation = new StringBuilder();
    DaxLineage all = DaxLineage.empty();
    for (Json item : group.objects("calculationItems")) {
      resolveItem(table, item, item.text("name"), operation, all);
      resolveItem(table, item.object("formatStringDefinition"), item.text("name"), operation, all);
    }
    for (String selection : List.of("noSelectionExpression", "multipleOrEmptySelectionExpression"))
      resolveItem(table, group.object(selection), selection, operation, all);
    // The other column of a calculation group orders its items.
    for (ModelObject attribute : table.dimension.parts(ModelObject.Role.features)) {
      if ("Ordinal".equals(attribute.get("physicalName"))) continue;
      catalog.property(attribute, "unresolved", String.join("\n", all.unresolved));
      link(attribute, operation.toString().strip(), all);
      if (expressions != null) expressions.note(attribute, all);
      return;
    }
  }

  private void resolveItem(Made table, Json definition, String name, StringBuilder operation, DaxLineage all)
      throws ImportException {
    String text = definition.text("expression");
    if (text.isEmpty()) return;
    DaxLineage lineage = resolver.resolveMeasure(text, table.names);
    report(lineage, null, table.dimension.path() + "/" + name);
    all.add(lineage);
    operation.append("-- ").append(name).append('\n').append(text.strip()).append('\n');
  }

  private DaxResolver.TableLineage resolveTable(Made table) {
    DaxResolver.TableLineage lineage = resolver.resolveTable(table.expression);
    report(lineage.whole(), table.dimension, table.dimension.path());
    catalog.property(table.dimension, "unresolved", String.join("\n", lineage.whole().unresolved));
    catalog.property(table.dimension, Labels.SOURCE_TABLES, namesOf(lineage.whole().sourceTables()));
    for (ModelObject source : lineage.whole().classifiers) maps.addSource(table.dimension, source);
    return lineage;
  }

  /** A calculated table's column: one it takes over, or one that its expression makes under that name. */
  private void resolveTableColumn(Column column, DaxResolver.TableLineage table) throws ImportException {
    DaxLineage lineage = table.columns().apply(column.definition.text("sourceColumn"));
    if (lineage == null) return;
    report(lineage, column.attribute, column.attribute.path());
    catalog.property(column.attribute, "unresolved", String.join("\n", lineage.unresolved));
    link(column.attribute, lineage.taken ? "" : column.table.expression, lineage);
  }

  /** What a feature comes from; tables that it names by themselves have no place in its map. */
  void link(ModelObject feature, String operation, DaxLineage lineage) {
    catalog.property(feature, Labels.SOURCE_TABLES, namesOf(lineage.tables));
    catalog.property(feature, Labels.COUNTED_TABLES, namesOf(lineage.counted));
    for (ModelObject classifier : lineage.classifiers) maps.addSource(feature.owner, classifier);
    maps.link(feature, operation, lineage.features);
  }

  private static String namesOf(Collection<ModelObject> tables) {
    return String.join("\n", tables.stream().map(ModelObject::name).toList());
  }

  /**
   * Warns about what cannot be read or found in the expression of `path`, as the native import does.
   * `subject` is what the expression is said of in the details; null where those read it again.
   */
  void report(DaxLineage lineage, ModelObject subject, String path) {
    if (expressions != null && subject != null) expressions.note(subject, lineage);
    for (String fault : lineage.faults)
      messages.warning("TAVEXPR_W0001", "Expression of '" + path + "', " + fault);
    for (String name : lineage.unresolved) {
      messages.warning("QVT_SSXMLA_W0013",
          "Could not find source feature '" + name + "' used in calculated expression '" + path + "'");
    }
  }
}

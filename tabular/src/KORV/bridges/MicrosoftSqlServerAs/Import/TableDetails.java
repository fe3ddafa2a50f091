package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import java.util.List;
import java.util.Set;

/** What tables, their columns, hierarchies and measures say beyond the model. */
final class TableDetails {
  private static final Set<String> TABLE_PLACED = Set.of(
      "columns", "measures", "hierarchies", "partitions", "calculationGroup", "refreshPolicy", "calendars");
  private static final Set<String> COLUMN_PLACED =
      Set.of("sortByColumn", "relatedColumnDetails", "alternateOf", "variations");
  private static final Set<String> MEASURE_PLACED =
      Set.of("kpi", "formatStringDefinition", "detailRowsDefinition");
  private static final Set<String> VARIATION_PLACED =
      Set.of("name", "relationship", "defaultHierarchy", "defaultColumn");
  private static final String EXPRESSION = "expression";

  private final Details details;
  private final DetailNames names;
  private final DetailSettings settings;
  private final TableImport tables;
  private final CubeImport cube;
  private final DaxDetails expressions;

  TableDetails(
      Details details, DetailNames names, DetailSettings settings, TableImport tables, CubeImport cube) {
    this.details = details;
    this.names = names;
    this.settings = settings;
    this.tables = tables;
    this.cube = cube;
    expressions = tables.expressions();
  }

  void importTables() {
    for (TableImport.Made table : tables.tables) importCalendars(table);
    PartitionDetails partitions = new PartitionDetails(details, names, settings, tables);
    CalculationDetails calculations = new CalculationDetails(details, settings, tables, cube);
    for (TableImport.Made table : tables.tables) {
      importColumns(table);
      importHierarchies(table);
      partitions.importPartitions(table);
      calculations.importGroup(table);
      ModelObject dimension = table.dimension();
      relateRows(dimension, table.definition().part("defaultDetailRowsDefinition"), table);
      settings.keepParts(dimension, table.definition(), TABLE_PLACED);
    }
    for (CubeImport.Computed one : cube.computed)
      if (one.definition() != null) importMeasure(one);
  }

  private void importColumns(TableImport.Made table) {
    List<ModelObject> attributes = table.dimension().parts(ModelObject.Role.features);
    int place = 0;
    for (Json column : table.definition().elements("columns")) {
      if (column.written("type").equals("rowNumber")) {
        details.passOver(Kinds.Passed.rowNumbers, 1);
        continue;
      }
      importColumn(table, column, attributes.get(place++));
    }
  }

  private void importColumn(TableImport.Made table, Json definition, ModelObject attribute) {
    String home = table.definition().written("name");
    if (definition.has("sortByColumn"))
      names.relateColumn(Kinds.RelationKind.order, attribute, home, definition.written("sortByColumn"), "");
    Json related = definition.part("relatedColumnDetails");
    for (Json group : related.elements("groupByColumns"))
      names.relateColumn(Kinds.RelationKind.group, attribute, home, group.written("groupingColumn"), "");
    importAlternate(definition.part("alternateOf"), attribute);
    for (Json variation : definition.elements("variations")) importVariation(variation, attribute);
    settings.keepParts(attribute, definition, COLUMN_PLACED);
    settings.keepMembers(attribute, "relatedColumnDetails", related, Set.of("groupByColumns"));
  }

  /** A column of a table that holds what another adds up to. */
  private void importAlternate(Json definition, ModelObject attribute) {
    Json base = definition.part("baseColumn");
    String summarization = definition.written("summarization");
    if (base.has("column"))
      names.relateColumn(
          Kinds.RelationKind.basis, attribute, base.written("table"), base.written("column"), summarization);
    else if (definition.has("baseTable"))
      names.relateTable(Kinds.RelationKind.basis, attribute, definition.written("baseTable"), summarization);
    settings.keepMembers(attribute, "alternateOf", definition, Set.of("baseColumn", "baseTable"));
  }

  private void importVariation(Json definition, ModelObject attribute) {
    Subject item = details.add(Kinds.Item.other, attribute, definition.written("name"));
    details.set(item, DetailSettings.LIST, "variations");
    String relationship = definition.written("relationship");
    Subject followed = names.relationship(relationship);
    if (followed != null)
      details.relate(Kinds.RelationKind.follows, followed, item);
    else if (!relationship.isEmpty())
      names.addMissing(item, relationship, "relationship");
    Json hierarchy = definition.part("defaultHierarchy");
    ModelObject shown = names.hierarchy(hierarchy.written("table"), hierarchy.written("hierarchy"));
    if (shown != null)
      details.relate(Kinds.RelationKind.basis, shown, item);
    else if (hierarchy.has("hierarchy"))
      names.addMissing(
          item, DetailNames.written(hierarchy.written("table"), hierarchy.written("hierarchy")), "hierarchy");
    Json column = definition.part("defaultColumn");
    if (column.has("column"))
      names.relateColumn(
          Kinds.RelationKind.basis, item, column.written("table"), column.written("column"), "");
    settings.keepAll(item, definition, VARIATION_PLACED);
  }

  private void importHierarchies(TableImport.Made table) {
    List<ModelObject> hierarchies = table.dimension().parts(ModelObject.Role.hierarchies);
    List<Json> definitions = table.definition().elements("hierarchies");
    for (int i = 0; i < definitions.size(); ++i) {
      settings.keepParts(hierarchies.get(i), definitions.get(i), Set.of("levels"));
      for (Json level : definitions.get(i).elements("levels")) {
        ModelObject place = names.level(hierarchies.get(i), level.written("name"));
        if (names.column(table.definition().written("name"), level.written("column")) == null)
          names.addOpenName(
              place, DetailNames.written(table.definition().written("name"), level.written("column")));
        settings.keepParts(place, level, Set.of());
      }
    }
  }

  /** Columns of the table stand for the parts of a calendar. */
  private void importCalendars(TableImport.Made table) {
    String home = table.definition().written("name");
    for (Json calendar : table.definition().elements("calendars")) {
      Subject item = details.add(Kinds.Item.calendar, table.dimension(), calendar.written("name"));
      expressions.addCalendar(calendar.written("name"), item);
      for (Json group : calendar.elements("calendarColumnGroups")) {
        String unit = group.written("timeUnit");
        if (group.has("primaryColumn"))
          names.relateColumn(Kinds.RelationKind.basis, item, home, group.written("primaryColumn"), unit);
        for (String list : List.of("associatedColumns", "columns")) {
          if (group.get(list).kind != Json.Kind.ARRAY) continue;
          for (Json column : group.get(list).values)
            names.relateColumn(Kinds.RelationKind.basis, item, home, column.text, unit);
        }
      }
      settings.keepAll(item, calendar, Set.of("name"));
    }
  }

  private void importMeasure(CubeImport.Computed one) {
    Json definition = one.definition();
    Json format = definition.part("formatStringDefinition");
    if (format.has(EXPRESSION)) {
      DaxLineage lineage = tables.resolver.resolveMeasure(format.written(EXPRESSION), one.table().names());
      expressions.relate(lineage, Kinds.RelationKind.formats, one.measure(), one.table().dimension().name());
    }
    settings.keepMembers(one.measure(), "formatStringDefinition", format, Set.of());
    relateRows(one.measure(), definition.part("detailRowsDefinition"), one.table());
    settings.keepMembers(
        one.measure(), "detailRowsDefinition", definition.part("detailRowsDefinition"), Set.of());
    settings.keepParts(one.isMeasure() ? one.measure() : one.measure().owner, definition, MEASURE_PLACED);
  }

  private void relateRows(ModelObject subject, Json definition, TableImport.Made table) {
    if (!definition.has(EXPRESSION)) return;
    DaxLineage lineage = tables.resolver.resolveMeasure(definition.written(EXPRESSION), table.names());
    expressions.relate(lineage, Kinds.RelationKind.detailRows, subject, table.dimension().name());
  }
}

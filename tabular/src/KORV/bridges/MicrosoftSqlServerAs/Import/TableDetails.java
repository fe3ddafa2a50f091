package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
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

  void importTables() throws ImportException {
    for (TableImport.Made table : tables.tables) importCalendars(table);
    PartitionDetails partitions = new PartitionDetails(details, names, settings, tables);
    CalculationDetails calculations = new CalculationDetails(details, settings, tables, cube);
    for (TableImport.Made table : tables.tables) {
      importColumns(table);
      importHierarchies(table);
      partitions.importPartitions(table);
      calculations.importGroup(table);
      ModelObject dimension = table.dimension();
      relateRows(dimension, table.definition().object("defaultDetailRowsDefinition"), table);
      settings.keepParts(dimension, table.definition(), TABLE_PLACED);
    }
    for (CubeImport.Computed one : cube.computed)
      if (one.definition() != null) importMeasure(one);
  }

  private void importColumns(TableImport.Made table) throws ImportException {
    List<ModelObject> attributes = table.dimension().parts(ModelObject.Role.features);
    int place = 0;
    for (Json column : table.definition().objects("columns")) {
      if (column.text("type").equals("rowNumber")) {
        details.passOver(Kinds.Passed.rowNumbers, 1);
        continue;
      }
      importColumn(table, column, attributes.get(place++));
    }
  }

  private void importColumn(TableImport.Made table, Json definition, ModelObject attribute)
      throws ImportException {
    String home = table.definition().text("name");
    if (definition.has("sortByColumn"))
      names.relateColumn(Kinds.Relation.order, attribute, home, definition.text("sortByColumn"), "");
    Json related = definition.object("relatedColumnDetails");
    for (Json group : related.objects("groupByColumns"))
      names.relateColumn(Kinds.Relation.group, attribute, home, group.text("groupingColumn"), "");
    importAlternate(definition.object("alternateOf"), attribute);
    for (Json variation : definition.objects("variations")) importVariation(variation, attribute);
    settings.keepParts(attribute, definition, COLUMN_PLACED);
    settings.keepMembers(attribute, "relatedColumnDetails", related, Set.of("groupByColumns"));
  }

  /** A column of a table that holds what another adds up to. */
  private void importAlternate(Json definition, ModelObject attribute) throws ImportException {
    Json base = definition.object("baseColumn");
    String summarization = definition.text("summarization");
    if (base.has("column"))
      names.relateColumn(
          Kinds.Relation.basis, attribute, base.text("table"), base.text("column"), summarization);
    else if (definition.has("baseTable"))
      names.relateTable(Kinds.Relation.basis, attribute, definition.text("baseTable"), summarization);
    settings.keepMembers(attribute, "alternateOf", definition, Set.of("baseColumn", "baseTable"));
  }

  private void importVariation(Json definition, ModelObject attribute) throws ImportException {
    Subject item = details.add(Kinds.Item.other, attribute, definition.text("name"));
    details.set(item, DetailSettings.LIST, "variations");
    String relationship = definition.text("relationship");
    Subject followed = names.relationship(relationship);
    if (followed != null)
      details.relate(Kinds.Relation.follows, followed, item);
    else if (!relationship.isEmpty())
      names.addMissing(item, relationship, "relationship");
    Json hierarchy = definition.object("defaultHierarchy");
    ModelObject shown = names.hierarchy(hierarchy.text("table"), hierarchy.text("hierarchy"));
    if (shown != null)
      details.relate(Kinds.Relation.basis, shown, item);
    else if (hierarchy.has("hierarchy"))
      names.addMissing(
          item, DetailNames.written(hierarchy.text("table"), hierarchy.text("hierarchy")), "hierarchy");
    Json column = definition.object("defaultColumn");
    if (column.has("column"))
      names.relateColumn(Kinds.Relation.basis, item, column.text("table"), column.text("column"), "");
    settings.keepAll(item, definition, VARIATION_PLACED);
  }

  private void importHierarchies(TableImport.Made table) throws ImportException {
    List<ModelObject> hierarchies = table.dimension().parts(ModelObject.Role.hierarchies);
    List<Json> definitions = table.definition().objects("hierarchies");
    for (int i = 0; i < definitions.size(); ++i) {
      settings.keepParts(hierarchies.get(i), definitions.get(i), Set.of("levels"));
      for (Json level : definitions.get(i).objects("levels")) {
        ModelObject place = names.level(hierarchies.get(i), level.text("name"));
        if (names.column(table.definition().text("name"), level.text("column")) == null)
          names.addOpenName(
              place, DetailNames.written(table.definition().text("name"), level.text("column")));
        settings.keepParts(place, level, Set.of());
      }
    }
  }

  /** Columns of the table stand for the parts of a calendar. */
  private void importCalendars(TableImport.Made table) throws ImportException {
    String home = table.definition().text("name");
    for (Json calendar : table.definition().objects("calendars")) {
      Subject item = details.add(Kinds.Item.calendar, table.dimension(), calendar.text("name"));
      expressions.addCalendar(calendar.text("name"), item);
      for (Json group : calendar.objects("calendarColumnGroups")) {
        String unit = group.text("timeUnit");
        if (group.has("primaryColumn"))
          names.relateColumn(Kinds.Relation.basis, item, home, group.text("primaryColumn"), unit);
        for (String list : List.of("associatedColumns", "columns")) {
          if (group.get(list).kind != Json.Kind.ARRAY) continue;
          for (Json column : group.get(list).values)
            names.relateColumn(Kinds.Relation.basis, item, home, column.text, unit);
        }
      }
      settings.keepAll(item, calendar, Set.of("name"));
    }
  }

  private void importMeasure(CubeImport.Computed one) throws ImportException {
    Json definition = one.definition();
    Json format = definition.object("formatStringDefinition");
    if (format.has(EXPRESSION)) {
      DaxLineage lineage = tables.resolver.resolveMeasure(format.text(EXPRESSION), one.table().names());
      expressions.relate(lineage, Kinds.Relation.formats, one.measure(), one.table().dimension().name());
    }
    settings.keepMembers(one.measure(), "formatStringDefinition", format, Set.of());
    relateRows(one.measure(), definition.object("detailRowsDefinition"), one.table());
    settings.keepMembers(
        one.measure(), "detailRowsDefinition", definition.object("detailRowsDefinition"), Set.of());
    settings.keepParts(one.isMeasure() ? one.measure() : one.measure().owner, definition, MEASURE_PLACED);
  }

  private void relateRows(ModelObject subject, Json definition, TableImport.Made table)
      throws ImportException {
    if (!definition.has(EXPRESSION)) return;
    DaxLineage lineage = tables.resolver.resolveMeasure(definition.text(EXPRESSION), table.names());
    expressions.relate(lineage, Kinds.Relation.detailRows, subject, table.dimension().name());
  }
}

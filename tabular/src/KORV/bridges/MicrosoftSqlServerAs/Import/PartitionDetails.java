package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import java.util.Set;

/** Partitions and refresh policies of tables: what they read, and that they fill. */
final class PartitionDetails {
  private static final Set<String> SOURCE_PLACED =
      Set.of("expression", "query", "dataSource", "expressionSource");

  private final Details details;
  private final DetailNames names;
  private final DetailSettings settings;
  private final TableImport tables;

  PartitionDetails(Details details, DetailNames names, DetailSettings settings, TableImport tables) {
    this.details = details;
    this.names = names;
    this.settings = settings;
    this.tables = tables;
  }

  void importPartitions(TableImport.Made table) {
    for (Json partition : table.definition().elements("partitions")) importPartition(table, partition);
    if (table.definition().has("refreshPolicy")) importPolicy(table);
  }

  private void importPartition(TableImport.Made table, Json definition) {
    Json source = definition.part("source");
    String type = source.written("type");
    boolean isQuery = type.isEmpty() || type.equals("query");
    String text = source.written(isQuery ? "query" : "expression");
    String language = type.equals("m") ? "m" : isQuery ? "sql" : "dax";
    Subject item =
        details.add(Kinds.Item.partition, table.dimension(), definition.written("name"), text, language);
    details.relate(Kinds.RelationKind.fills, item, table.dimension());
    for (ModelObject read : tables.readingOf(definition))
      details.relate(Kinds.RelationKind.reads, read, item);
    if (type.equals("m")) names.relateQuery(text, item);
    if (type.equals("calculated")) relateCalculated(text, item);
    relateSource(source, item);
    settings.keepAll(item, definition, Set.of("name", "source"));
    settings.keepMembers(item, "source", source, SOURCE_PLACED);
  }

  /** What a calculated table is made of: its partition reads it as that of others reads the database. */
  private void relateCalculated(String text, Subject item) {
    DaxLineage lineage = tables.resolver.resolveMeasure(text, null);
    for (ModelObject feature : lineage.features) details.relate(Kinds.RelationKind.reads, feature, item);
    for (ModelObject named : lineage.tables) details.relate(Kinds.RelationKind.reads, named, item);
  }

  private void relateSource(Json source, Subject item) {
    String dataSource = source.written("dataSource");
    Subject connection = names.dataSource(dataSource);
    if (connection != null)
      details.relate(Kinds.RelationKind.connects, connection, item);
    else if (!dataSource.isEmpty())
      names.addMissing(item, dataSource, "data source");
    String shared = source.written("expressionSource");
    Subject read = names.shared(shared);
    if (read != null)
      details.relate(Kinds.RelationKind.reads, read, item);
    else if (!shared.isEmpty())
      names.addMissing(item, shared, "expression");
  }

  private void importPolicy(TableImport.Made table) {
    Json definition = table.definition().part("refreshPolicy");
    String text = definition.written("sourceExpression");
    Subject item = details.add(Kinds.Item.refreshPolicy, table.dimension(), "Refresh policy", text, "m");
    details.relate(Kinds.RelationKind.refreshes, item, table.dimension());
    for (ModelObject read : tables.readingOf(definition))
      details.relate(Kinds.RelationKind.reads, read, item);
    names.relateQuery(text, item);
    names.relateQuery(definition.written("pollingExpression"), item);
    settings.keepAll(item, definition, Set.of("sourceExpression"));
  }
}

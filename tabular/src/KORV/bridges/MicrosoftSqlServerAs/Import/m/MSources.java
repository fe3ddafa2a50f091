package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;

/** Functions that open a connection, steps into what it offers, and queries that a database runs. */
final class MSources {
  private static final String COMPUTED = "runs a text that is computed";
  private static final String COMPUTED_ADDRESS = "connects to an address that is computed";

  private MSources() {}

  static MValue open(MCall call, SourceFunctions.Opening opening) {
    return switch (opening.form()) {
      case DATABASE, STEPS -> database(call, opening, call.text(1));
      case SERVER -> database(call, opening, null);
      case ITEM -> item(call, opening);
      case PROJECT, WORKSPACE, SERVICE -> MValue.source(MSource.opened(call.name, opening, "", ""));
      case TEXT, QUERY -> connectionText(call, opening);
      case FILE -> MFiles.open(call, opening);
      case FOLDER -> MFiles.openFolder(call, opening);
    };
  }

  private static MSource opened(MCall call, SourceFunctions.Opening opening, String server, String database) {
    // One connection for both, whether the database is an argument or a step.
    String function =
        call.name.endsWith(".Databases") ? call.name.substring(0, call.name.length() - 1) : call.name;
    MSource source = MSource.opened(function, opening, server, database == null ? "" : database);
    return server == null ? source.blamed(call.fault(COMPUTED_ADDRESS)) : source;
  }

  private static MValue database(MCall call, SourceFunctions.Opening opening, String database) {
    MSource source = opened(call, opening, call.text(0), database);
    MValue options = call.argument(call.arguments.size() - 1);
    for (String name : List.of("Catalog", "Database"))
      if (options.fieldText(name) != null && source.address().database().isEmpty())
        source = source.withDatabase(options.fieldText(name));
    boolean computed = database == null && call.has(1) && opening.form() != SourceFunctions.Form.SERVER
        && call.argument(1).is(MValue.Kind.UNKNOWN) && !call.isNothing(1);
    // Another database of the same server would be a guess.
    if (computed) source = source.withServer(null).blamed(call.fault(COMPUTED_ADDRESS));
    if (!options.fields.containsKey("Query")) return MValue.source(source);
    String query = options.fieldText("Query");
    if (query != null) return queryOf(call, source, query);
    return call.evaluator.unknownTable(List.of(MValue.source(source)), call.fault(COMPUTED));
  }

  /** AzureDataExplorer.Contents(cluster, database, table or query). */
  private static MValue item(MCall call, SourceFunctions.Opening opening) {
    MSource source = opened(call, opening, call.text(0), call.text(1));
    if (!call.has(2) || call.isNothing(2)) return MValue.source(source);
    String item = call.text(2);
    if (item != null && item.matches("[\\p{L}_][\\p{L}\\p{N}_ -]*"))
      return MValue.table(source.table(call.evaluator.context(), "", item));
    return call.evaluator.unknownTable(
        List.of(MValue.source(source)), call.fault("runs a query that is not SQL"));
  }

  /** Odbc.Query and the like: the text of the connection, or a record of it, then the query's. */
  private static MValue connectionText(MCall call, SourceFunctions.Opening opening) {
    MSource source = opened(call, opening, textOf(call.argument(0)), "");
    if (opening.form() == SourceFunctions.Form.TEXT) return MValue.source(source);
    if (call.text(1) != null) return queryOf(call, source, call.text(1));
    return call.evaluator.unknownTable(List.of(MValue.source(source)), call.fault(COMPUTED));
  }

  private static String textOf(MValue value) {
    if (!value.is(MValue.Kind.RECORD)) return value.constantText();
    StringBuilder text = new StringBuilder();
    for (String name : value.fields.keySet()) {
      if (value.fieldText(name) != null)
        text.append(text.isEmpty() ? "" : ";").append(name).append('=').append(value.fieldText(name));
    }
    return text.isEmpty() ? null : text.toString();
  }

  static MValue nativeQuery(MCall call) {
    MSource source = call.argument(0).source;
    if (source == null) return MValue.UNKNOWN;
    if (call.text(1) != null) return queryOf(call, source, call.text(1));
    return call.unknownColumns(COMPUTED);
  }

  /** Source{[Schema="dbo",Item="Sales"]}, Source{[Name="Sales"]} and the like. */
  static MValue item(MEvaluation evaluator, MValue value, MValue key, int at) {
    MSource source = value.source;
    if (source.isFile()) return MPaths.item(evaluator, source, key);
    if (source.form() == SourceFunctions.Form.WORKSPACE) {
      MSource next = inWorkspace(source, key);
      if (next != null) return MValue.source(next);
    }
    String schema = key.fieldText("Schema");
    String item = key.fieldText("Item");
    // A cube stands in a folder of its own name.
    boolean cubes = source.address().hasCubes();
    if (cubes && item == null && key.fieldText("Id") != null)
      return MValue.source(source.withSchema(key.fieldText("Id")));
    for (String name : List.of("Id", "entity", "Key"))
      if (item == null) item = key.fieldText(name);
    String name = key.fieldText("Name");
    boolean named = key.fields.containsKey("Item") || key.fields.containsKey("Name");
    if (item == null && !named && schema != null) return MValue.source(source.withSchema(schema));
    if (item == null && name != null) {
      MSource next = step(source, name, key.fieldText("Kind"));
      if (next != null) return MValue.source(next);
      item = name;
    }
    if (key.fields.containsKey("Schema") && schema == null) item = null;
    // Which sheet is the first one the workbook alone knows.
    if (item == null && source.isWorkbook())
      return MValue.listed(
          MPaths.content(evaluator, source.as(SourceFunctions.Form.FILE), source.function()));
    // The tables of a model are those of all its cubes.
    String folder = cubes ? "" : source.schema();
    if (item != null)
      return MValue.listed(source.table(evaluator.context(), schema != null ? schema : folder, item));
    MFault fault = evaluator.fault("the name of the item is computed", at);
    MValue unknown = evaluator.unknownTable(List.of(value), fault);
    unknown.listed = true;
    return unknown;
  }

  /** What a step picks that is no table; null for a table. */
  private static MSource step(MSource source, String name, String kind) {
    boolean servers =
        source.form() == SourceFunctions.Form.SERVER || source.form() == SourceFunctions.Form.PROJECT;
    if ("Schema".equals(kind)) return source.withSchema(name);
    if ("Database".equals(kind))
      return source.address().database().isEmpty() ? source.withDatabase(name) : source;
    if ("Folder".equals(kind)) return source;
    if (kind != null) return null;
    boolean flat = source.address().kind().equals("odata") || source.address().kind().equals("salesforce")
        || source.address().kind().equals("dataverse");
    if (servers && !flat && source.address().database().isEmpty()) return source.withDatabase(name);
    boolean bySchema =
        source.form() == SourceFunctions.Form.STEPS || source.form() == SourceFunctions.Form.PROJECT;
    return bySchema && source.schema().isEmpty() ? source.withSchema(name) : null;
  }

  /** A workspace, or an item of it, by identifier or name; null for what stands in an item. */
  private static MSource inWorkspace(MSource source, MValue key) {
    for (String name : List.of("workspaceId", "workspaceName"))
      if (key.fieldText(name) != null) return source.withServer(key.fieldText(name));
    for (String name :
        List.of("lakehouseId", "warehouseId", "dataflowId", "lakehouseName", "warehouseName", "dataflowName"))
      if (key.fieldText(name) != null) return source.withDatabase(key.fieldText(name));
    boolean folder = source.address().server().isEmpty() && key.fieldText("Id") != null;
    return folder ? source : null;
  }

  /** The text goes into the model as it is: what it reads is found out there, as for every query. */
  private static MValue queryOf(MCall call, MSource source, String text) {
    String connection = source.connection(call.evaluator.context());
    Relation relation = Relation.ofTable(Origin.Table.ofQuery(connection, text));
    return MValue.table(source.fault() == null ? relation : relation.blame(source.fault()));
  }
}

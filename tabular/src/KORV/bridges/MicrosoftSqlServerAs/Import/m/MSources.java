package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;

/** Functions that open a connection to a database, and queries that a database runs. */
final class MSources {
  private static final String COMPUTED = "runs a text that is computed";

  private MSources() {}

  static MValue database(MCall call) {
    String server = call.text(0);
    String database = call.text(1);
    if (server == null) return MValue.UNKNOWN;
    String connection =
        call.evaluator.context().connection(call.name, server, database == null ? "" : database);
    MValue options = call.argument(call.arguments.size() - 1);
    MValue source = MValue.source(connection, "");
    if (!options.fields.containsKey("Query")) return source;
    String query = options.fieldText("Query");
    if (query != null) return queryOf(connection, query);
    return call.evaluator.unknownTable(List.of(source), call.fault(COMPUTED));
  }

  static MValue databases(MCall call) {
    if (call.text(0) == null) return MValue.UNKNOWN;
    return MValue.server(call.name.substring(0, call.name.length() - 1), call.text(0));
  }

  /** Odbc.Query and the like: the text of the connection, then the query's. */
  static MValue query(MCall call) {
    if (call.text(0) == null) return MValue.UNKNOWN;
    String connection = call.evaluator.context().connection(call.name, call.text(0), "");
    if (call.text(1) != null) return queryOf(connection, call.text(1));
    return call.evaluator.unknownTable(List.of(MValue.source(connection, "")), call.fault(COMPUTED));
  }

  static MValue nativeQuery(MCall call) {
    if (call.argument(0).connection == null) return MValue.UNKNOWN;
    if (call.text(1) != null) return queryOf(call.argument(0).connection, call.text(1));
    return call.unknownColumns(COMPUTED);
  }

  /** Source{[Schema="dbo",Item="Sales"]}, Source{[Name="Sales"]} and the like. */
  static MValue item(MEvaluation evaluator, MValue source, MValue key, int at) {
    String item = key.fieldText("Item");
    String name = item != null ? item : key.fieldText("Name");
    if (name == null) {
      if (source.connection == null) return MValue.UNKNOWN;
      MFault fault = evaluator.fault("the name of the item is computed", at);
      MValue unknown = evaluator.unknownTable(List.of(source), fault);
      unknown.listed = true;
      return unknown;
    }
    if (source.server != null)
      return MValue.source(evaluator.context().connection(source.opener, source.server, name), "");
    String schema = key.fieldText("Schema");
    String kind = key.fieldText("Kind");
    if ("Schema".equals(kind)) return MValue.source(source.connection, name);
    if ("Database".equals(kind)) return MValue.source(source.connection, source.schema);
    Origin.Table table =
        Origin.Table.named(source.connection, schema != null ? schema : source.schema, name);
    MValue value = MValue.table(Relation.ofTable(table));
    value.listed = true;
    return value;
  }

  /** The text goes into the model as it is: what it reads is found out there, as for every query. */
  private static MValue queryOf(String connection, String text) {
    return MValue.table(Relation.ofTable(Origin.Table.ofQuery(connection, text)));
  }
}

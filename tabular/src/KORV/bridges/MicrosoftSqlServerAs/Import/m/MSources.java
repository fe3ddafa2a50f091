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
    String connection = call.evaluator.context().connection(call.name, server, database == null ? "" : database);
    MValue options = call.argument(call.arguments.size() - 1);
    MValue source = MValue.source(connection, "");
    MValue query = options.fields.get("Query");
    if (query == null) return source;
    if (query.constantText() != null) return queryOf(connection, query.text);
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

  /** The text goes into the model as it is: what it reads is found out there, as for every query. */
  private static MValue queryOf(String connection, String text) {
    return MValue.table(Relation.ofTable(Relation.Table.ofQuery(connection, text)));
  }
}

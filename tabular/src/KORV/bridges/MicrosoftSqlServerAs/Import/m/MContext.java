package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/** What a model offers to its queries. */
public interface MContext {
  /** The text of a shared expression, or null. */
  String sharedExpression(String name);

  /** The text of the query that fills a table of the model, which others can name; null when it has not just one. */
  String tableQuery(String table);

  /** The key of a data source of the model by its name, or null. */
  String dataSource(String name);

  /** The key of a connection that a query opens by itself. */
  String connection(String function, String server, String database);
}

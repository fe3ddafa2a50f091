package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/** What a model offers to its queries. */
public interface MContext extends MSource.Connections {
  /** The text of a shared expression, or null. */
  String sharedExpression(String name);

  /**
   * The text of the query that fills a table of the model, which others can name; null when it has not just
   * one.
   */
  String tableQuery(String table);

  /** A data source of the model by its name, or null. */
  MSource dataSource(String name);

  /** Whether a connection leads to files. */
  boolean isFile(String connection);
}

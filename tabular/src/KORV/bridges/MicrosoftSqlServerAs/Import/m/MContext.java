package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/** What a model offers to its queries. */
public interface MContext {
  /** The text of a shared expression, or null. */
  String sharedExpression(String name);

  /** A data source of the model by its name, or null. */
  MSource dataSource(String name);

  /** The key of a connection that a query opens by itself. */
  String connection(SourceAddress address);

  /** Whether a connection leads to files. */
  boolean isFile(String connection);
}

package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/**
 * Where a connection leads: the kind of server, file or service, empty for SQL Server, its address and, where
 * the kind has them, the database. `function` is what opened it.
 */
public record SourceAddress(String function, String kind, String server, String database) {
  /** Whether what a database of this kind offers are cubes. */
  boolean hasCubes() { return kind.equals("ssas") || kind.equals("sapbw"); }
}

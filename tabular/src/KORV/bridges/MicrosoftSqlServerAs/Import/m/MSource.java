package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/**
 * An open source, and how far a query has come in it. `server` is null where it is computed; of a data source
 * of the model `key` tells the connection. `schema` is the schema, or the path of a file below its folder.
 */
public record MSource(String function, SourceFunctions.Form form, SourceAddress address, String schema,
    String key, MFault fault) {
  /** Who makes connections. */
  public interface Connections {
    /** The key of a connection that a query opens by itself. */
    String connection(SourceAddress address);
  }

  /** The key of no connection. */
  public static final String UNKNOWN_CONNECTION = "?";

  static MSource opened(String function, SourceFunctions.Opening opening, String server, String database) {
    SourceAddress address = new SourceAddress(function, opening.kind(), server, database);
    return new MSource(function, opening.form(), address, "", null, null);
  }

  /** A data source of the model. */
  public static MSource ofModel(
      String name, SourceFunctions.Opening opening, String server, String database) {
    SourceAddress address = new SourceAddress("", opening.kind(), server, database);
    return new MSource("", opening.form(), address, "", name, null);
  }

  MSource at(String server, String database, String schema) {
    SourceAddress there = new SourceAddress(address.function(), address.kind(), server, database);
    // What the connection string of a data source names only whoever loads the model reads.
    String known =
        there.equals(address) || address.server() != null && address.server().isEmpty() ? key : null;
    return new MSource(function, form, there, schema, known, fault);
  }

  MSource withDatabase(String database) {
    return at(address.server(), database, schema);
  }

  MSource withSchema(String name) {
    return at(address.server(), address.database(), name);
  }

  MSource withServer(String server) {
    return at(server, address.database(), schema);
  }

  MSource as(SourceFunctions.Form other) {
    return new MSource(function, other, address, schema, key, fault);
  }

  MSource readBy(String reader) {
    SourceAddress read = new SourceAddress(reader, address.kind(), address.server(), address.database());
    return new MSource(reader, form, read, schema, key, fault);
  }

  MSource ofKind(String kind) {
    SourceAddress other = new SourceAddress(address.function(), kind, address.server(), address.database());
    return new MSource(function, form, other, schema, null, fault);
  }

  MSource blamed(MFault cause) {
    return new MSource(function, form, address, schema, key, cause);
  }

  public boolean isFile() {
    return form == SourceFunctions.Form.FILE || form == SourceFunctions.Form.FOLDER;
  }

  /** Whether steps pick a part of one file. */
  boolean isWorkbook() {
    return !isFile() && SourceFunctions.FILE_KINDS.contains(address.kind());
  }

  /** Whether steps have come to one cube of a model. */
  public boolean isCube() {
    return address.hasCubes() && address.server() != null && !schema.isEmpty();
  }

  /** The key of the connection, which is made on the first use. */
  public String connection(Connections connections) {
    if (key != null) return key;
    return address.server() == null ? UNKNOWN_CONNECTION : connections.connection(address);
  }

  Relation table(Connections connections, String ownSchema, String name) {
    Relation relation = Relation.ofTable(Origin.Table.named(connection(connections), ownSchema, name));
    return fault == null ? relation : relation.blame(fault);
  }
}

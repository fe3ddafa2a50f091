package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.Budget;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.MSource;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.Origin;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.Relation;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.SourceAddress;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.SourceFunctions;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Catalog;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Labels;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.LineageMaps;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** Data sources, and the tables and queries that a model reads from them. */
final class PhysicalLayer {
  private static final Set<String> PLACED =
      Set.of("name", "description", "connectionString", "type", "credential", "password");
  private static final SourceFunctions.Opening DATABASE =
      new SourceFunctions.Opening("", SourceFunctions.Form.DATABASE);
  private static final String SERVER = "Data Source";
  private static final String DATABASE_KEY = "Initial Catalog";
  private static final String INLINE = "Inline";
  /** What the address of a structured data source calls its server, file or service. */
  private static final List<String> SERVERS = List.of("server", "url", "path", "account", "host");
  /** The package of queries that name no data source. */
  private static final String NO_SOURCE = "Queries";

  private static final class Table {
    final ModelObject object;
    final Map<String, ModelObject> columns = new HashMap<>();

    Table(ModelObject object) { this.object = object; }
  }

  private final ModelObject model;
  private final ModelObject views;
  private final Catalog catalog;
  private final LineageMaps maps;
  private final Map<String, ModelObject> connections = new HashMap<>();
  private final Map<String, MSource> dataSources = new HashMap<>();
  /** The keys of connections that lead to files. */
  private final Set<String> files = new HashSet<>();
  private final Map<String, ModelObject> packages = new HashMap<>();
  private final Map<Origin.Table, Table> tables = new HashMap<>();
  private final Map<String, Table> queries = new HashMap<>();
  /** Of the table that is being imported. */
  private final Map<Origin.Table, Table> databaseQueries = new HashMap<>();

  PhysicalLayer(ModelObject model, ModelObject views, Catalog catalog, LineageMaps maps) {
    this.model = model;
    this.views = views;
    this.catalog = catalog;
    this.maps = maps;
  }

  void addDataSource(Json definition) throws ImportException {
    String name = definition.text("name");
    Json details = definition.object("connectionDetails");
    boolean structured = definition.text("type").equals("structured");
    ModelObject connection =
        addConnection(name, structured ? address(details) : definition.text("connectionString"));
    connection.set("description", definition.text("description"));
    // What a connection string says of the data store is read by whoever loads the model.
    SourceFunctions.Opening opening =
        structured ? SourceFunctions.ofProtocol(details.text("protocol")) : DATABASE;
    catalog.property(connection, "kind", opening.kind());
    catalog.property(connection, "type", definition.text("type"));
    catalog.keep(connection, definition, PLACED);
    if (connections.putIfAbsent(name, connection) != null) return;
    Json place = details.object("address");
    String server = "";
    for (String key : SERVERS)
      if (server.isEmpty()) server = place.text(key);
    dataSources.put(name, MSource.ofModel(name, opening, server, place.text("database")));
    if (dataSources.get(name).isFile()) files.add(name);
  }

  private ModelObject addConnection(String name, String connectionString) {
    ModelObject connection =
        new ModelObject("TAVStoreConnection", name).set("nativeType", Labels.DATA_SOURCE);
    connection.set("connectionString", connectionString);
    return model.add(ModelObject.Role.storeConnections, connection);
  }

  /** The address of a structured data source as a connection string. */
  private static String address(Json details) throws ImportException {
    Json address = details.object("address");
    StringBuilder text = new StringBuilder();
    for (String name : new LinkedHashSet<>(address.names)) {
      Json value = address.get(name);
      if (value.kind == Json.Kind.OBJECT) {
        for (String inner : new LinkedHashSet<>(value.names)) append(text, inner, value.get(inner).display());
        continue;
      }
      append(text,
          SERVERS.contains(name)        ? SERVER
              : name.equals("database") ? DATABASE_KEY
                                        : name,
          value.display());
    }
    return text.toString();
  }

  /** A value that would end early as it is goes into quotes. */
  private static void append(StringBuilder text, String key, String value) {
    if (value.isEmpty()) return;
    boolean plain = value.indexOf(';') < 0 && "\"'{".indexOf(value.charAt(0)) < 0;
    text.append(text.isEmpty() ? "" : ";").append(key).append('=');
    text.append(plain ? value : '"' + value.replace("\"", "\"\"") + '"');
  }

  boolean hasDataSource(String name) { return dataSources.containsKey(name); }

  /** A data source of the model, or null. */
  MSource dataSource(String name) { return dataSources.get(name); }

  boolean isFile(String connection) { return files.contains(connection); }

  /** The key of a connection that an M query opens; it is made on the first use. */
  String openConnection(SourceAddress address) {
    boolean isFile = SourceFunctions.FILE_KINDS.contains(address.kind());
    // Whatever reads files of a folder reads that folder.
    String key = (isFile ? "" : address.function()) + "\n" + address.kind() + "\n" + address.server() + "\n"
        + address.database();
    if (connections.containsKey(key)) return key;
    StringBuilder text = new StringBuilder();
    boolean written = address.kind().equals("odbc") || address.kind().equals("oledb");
    if (written)
      text.append(address.server());
    else
      append(text, SERVER, address.server());
    append(text, DATABASE_KEY, address.database());
    ModelObject connection = addConnection(nameOf(address), text.toString());
    catalog.property(connection, "kind", address.kind());
    catalog.property(connection, "function", address.function());
    connections.put(key, connection);
    if (isFile) files.add(key);
    return key;
  }

  private static String nameOf(SourceAddress address) {
    String separator = address.server().isEmpty() || address.database().isEmpty() ? "" : ";";
    String name = address.server() + separator + address.database();
    if (!name.isEmpty()) return name;
    int dot = address.function().indexOf('.');
    return dot < 0 ? INLINE : address.function().substring(0, dot);
  }

  /** The key of the connection of rows that stand in a query itself. */
  String inlineConnection() { return openConnection(new SourceAddress("", "inline", "", "")); }

  /** A measure of a cube that another model has; cube and measure are made on the first use. */
  ModelObject measure(String connection, String cube, String name) {
    return column(table(Origin.Table.named(connection, "", cube)), name, null, true);
  }

  /** A column of a database table or query; table and column are made on the first use. */
  private ModelObject column(Source source, Origin.Column column, ModelObject type) {
    Origin.Table name = column.table();
    Table owner = name.isQuery() ? query(source, name) : table(name);
    return column(owner, column.name(), type, true);
  }

  private Table table(Origin.Table name) {
    Origin.Table key =
        Origin.Table.named(name.connection(), Names.fold(name.schema()), Names.fold(name.name()));
    Table table = tables.get(key);
    if (table == null) {
      table = addTable(name.connection(), name.name(), Labels.TABLE);
      table.object.set("schemaName", name.schema());
      tables.put(key, table);
    }
    return table;
  }

  /**
   * A query of the database, whose sources whoever loads the model finds. Each table of the model that reads
   * one has its own.
   */
  private Table query(Source source, Origin.Table name) {
    Table known = databaseQueries.get(name);
    if (known != null) return known;
    Table table = addTable(name.connection(), source.name, Labels.NAMED_QUERY);
    table.object.set("query", name.query()).set("nativeType", Labels.UNRESOLVED_QUERY);
    databaseQueries.put(name, table);
    return table;
  }

  private Table addTable(String connection, String name, String tableType) {
    ModelObject object =
        new ModelObject("TAVTable", name).set("physicalName", name).set("tableType", tableType);
    object.set("dataSourceId", connections.containsKey(connection) ? connections.get(connection).name() : "");
    viewPackage(connection).addUnique(ModelObject.Role.namespaceElements, object);
    ModelObject source = connections.get(connection);
    if (source != null) source.refer("connectionClassifiers", object);
    return new Table(object);
  }

  private ModelObject viewPackage(String connection) {
    ModelObject source = connections.get(connection);
    if (source == null) connection = "";
    ModelObject known = packages.get(connection);
    if (known != null) return known;
    ModelObject made = new ModelObject("TAVDesignPackage", source == null ? NO_SOURCE : source.name());
    made.set("nativeType", Labels.DATA_SOURCE_VIEW);
    packages.put(connection, views.addUnique(ModelObject.Role.namespaceElements, made));
    return made;
  }

  private ModelObject column(Table table, String name, ModelObject type, boolean structural) {
    ModelObject known = table.columns.get(Names.fold(name));
    if (known != null) return known;
    ModelObject column =
        new ModelObject("TAVColumn", name).set("physicalName", name).set("structural", structural);
    if (type != null) column.refer("type", type);
    table.object.addFeature(column);
    table.columns.put(Names.fold(name), column);
    return column;
  }

  /**
   * What a partition reads: the relation, null when it cannot be told, and the text that says so. `open` are
   * the columns that a query in M was asked for and does not tell the sources of; null where nobody wants to
   * know. `read` are the tables that columns were made in; null where nobody wants to know.
   */
  record Source(String connection, Relation relation, String name, String query, Budget budget,
      Set<String> open, Set<ModelObject> read) {
    static Source of(String connection, Relation relation, String name, String query, boolean watched,
        Set<ModelObject> read) {
      return new Source(connection, relation, name, query, new Budget(query.length()),
          watched ? new LinkedHashSet<>() : null, read);
    }
  }

  /**
   * The columns that a table's column is read from: of the database where the partition only chooses and
   * renames, of the partition's query where it computes, or cannot be understood.
   */
  List<ModelObject> columnsFor(Source source, String sourceColumn, ModelObject type) {
    List<ModelObject> columns = columnsOf(source, sourceColumn, type);
    if (source.read != null)
      for (ModelObject column : columns) source.read.add(column.owner);
    return columns;
  }

  private List<ModelObject> columnsOf(Source source, String sourceColumn, ModelObject type) {
    Relation relation = source.relation;
    Set<Origin.Column> direct = relation == null ? null : relation.sourcesOf(sourceColumn, source.budget);
    if (relation != null && relation.isPlain() && direct != null && !direct.isEmpty())
      return physical(source, direct, type);
    if (direct == null && source.open != null) source.open.add(sourceColumn);
    return List.of(column(query(source), sourceColumn, type, direct == null || direct.size() == 1));
  }

  private List<ModelObject> physical(Source source, Set<Origin.Column> columns, ModelObject type) {
    List<ModelObject> found = new ArrayList<>();
    for (Origin.Column column : columns) found.add(column(source, column, type));
    return found;
  }

  private Table query(Source source) {
    String key = source.connection + "\n" + source.query;
    Table known = queries.get(key);
    if (known != null) return known;
    Table table = addTable(source.connection, source.name, Labels.NAMED_QUERY);
    table.object.set("query", source.query);
    queries.put(key, table);
    return table;
  }

  /** Leads the columns of a table's queries on to the database once all of them were asked for. */
  void linkQueries(List<Source> sources) {
    for (Source source : sources) linkQuery(source);
    databaseQueries.clear();
  }

  private void linkQuery(Source source) {
    Table table = queries.remove(source.connection + "\n" + source.query);
    if (table == null || source.relation == null) return;
    for (Relation.Output output : source.relation.outputs()) {
      boolean same = output.sources() == null || output.sources().size() == 1;
      if (!output.name().isEmpty()) column(table, output.name(), null, same);
    }
    for (ModelObject column : new ArrayList<>(table.columns.values())) {
      Set<Origin.Column> sources = source.relation.sourcesOf(column.name(), source.budget);
      if (sources == null) continue;
      List<ModelObject> type = column.references().get("type");
      boolean same = sources.size() == 1 && type != null;
      maps.link(column, "", physical(source, sources, same ? type.get(0) : null));
    }
    linkRows(source, table);
  }

  /**
   * The tables that a query reads are its sources also where no column of theirs is known; conditions limit
   * their rows.
   */
  private void linkRows(Source source, Table table) {
    Origin origin = source.relation.origin();
    for (Origin.Table read : origin.tables())
      maps.addSource(table.object, (read.isQuery() ? query(source, read) : table(read)).object);
    Set<Origin.Condition> conditions = origin.conditions();
    if (conditions.isEmpty()) return;
    Set<Origin.Column> limiting = new LinkedHashSet<>();
    Set<String> texts = new LinkedHashSet<>();
    for (Origin.Condition condition : conditions) {
      limiting.addAll(condition.sources());
      if (!condition.text().isEmpty()) texts.add(condition.text());
    }
    String name = Labels.SQL_CONDITION;
    for (int n = 2; table.columns.containsKey(Names.fold(name)); ++n) name = Labels.SQL_CONDITION + "_" + n;
    ModelObject feature = new ModelObject("TAVCondition", name).set("physicalName", name);
    String expression = String.join("\n", texts);
    table.object.addFeature(feature.set("expression", expression));
    maps.link(feature, expression, physical(source, limiting, null));
  }
}

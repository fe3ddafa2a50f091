package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxResolver;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.HashMap;
import java.util.Map;

/** Tells of a name that leads to no column, measure or table what it may be. */
final class OpenNames {
  private final DaxResolver resolver;
  private final Details details;
  /** What else a definition has, by folded name: "hierarchy of 'Date'". */
  private final Map<String, String> others = new HashMap<>();
  private final Map<String, Map<String, ModelObject>> hierarchies = new HashMap<>();
  private Spellings tables;
  private Spellings measures;
  private Map<String, ModelObject> columns;
  private final Map<ModelObject, Spellings> columnsOfTables = new HashMap<>();

  OpenNames(DaxResolver resolver, Details details) {
    this.resolver = resolver;
    this.details = details;
  }

  void addHierarchy(ModelObject table, ModelObject hierarchy) {
    hierarchies.computeIfAbsent(Names.fold(table.name()), t -> new HashMap<>())
        .putIfAbsent(Names.fold(hierarchy.name()), hierarchy);
    others.putIfAbsent(Names.fold(hierarchy.name()), "hierarchy of " + quoted(table.name()));
  }

  /** A hierarchy of a table; null when it has none of that name. */
  ModelObject findHierarchy(String table, String name) {
    return hierarchies.getOrDefault(Names.fold(table), Map.of()).get(Names.fold(name));
  }

  void addOther(String name, String what) { others.putIfAbsent(Names.fold(name), what); }

  static String written(ModelObject column) {
    return quoted(column.owner.name()) + "[" + column.name().replace("]", "]]") + "]";
  }

  private static String quoted(String name) { return "'" + name.replace("'", "''") + "'"; }

  /** `written` is 'Table', [Name] or 'Table'[Name]; `home` the table in whose rows it may stand, or null. */
  void add(Subject subject, String written, String home) {
    int bracket = written.startsWith("[") ? 0 : written.indexOf("'[", 1) + 1;
    boolean named = written.startsWith("[") || bracket > 0;
    String table = named ? written.substring(0, bracket) : written;
    if (!table.isEmpty()) table = table.substring(1, table.length() - 1).replace("''", "'");
    String name = named ? written.substring(bracket + 1, written.length() - 1).replace("]]", "]") : null;
    if (name == null) {
      addTable(subject, written, table);
    } else if (table.isEmpty()) {
      addAlone(subject, written, name, home);
    } else {
      addColumn(subject, written, table, name);
    }
  }

  private void addTable(Subject subject, String written, String name) {
    boolean isMeasure = resolver.findMeasure(name) != null;
    String other = isMeasure ? "measure" : others.get(Names.fold(name));
    String near = other == null ? tables().nearest(name) : null;
    add(subject, written, other, near == null ? "" : quoted(near));
  }

  private void addAlone(Subject subject, String written, String name, String home) {
    ModelObject column = columns().get(Names.fold(name));
    String other = column == null ? others.get(Names.fold(name)) : "column of " + quoted(column.owner.name());
    String near = other == null ? measures().nearest(name) : null;
    String own = other == null && near == null && home != null && resolver.findTable(home) != null
        ? columnsOf(home).nearest(name)
        : null;
    String table = own == null ? "" : quoted(resolver.dimensionOf(home).name());
    String found = own == null ? near : own;
    add(subject, written, other, found == null ? "" : table + "[" + found.replace("]", "]]") + "]");
  }

  private void addColumn(Subject subject, String written, String table, String name) {
    boolean isHierarchy = findHierarchy(table, name) != null;
    String known = resolver.findTable(table) == null ? tables().nearest(table) : table;
    String near = null;
    if (!isHierarchy && known != null) {
      ModelObject exact = resolver.findColumn(known, name);
      near = exact != null ? exact.name() : columnsOf(known).nearest(name);
    }
    if (near != null) {
      add(subject, written, null, quoted(known) + "[" + near.replace("]", "]]") + "]");
      return;
    }
    ModelObject elsewhere = isHierarchy ? null : columns().get(Names.fold(name));
    add(subject, written, isHierarchy ? "hierarchy" : null, elsewhere == null ? "" : written(elsewhere));
  }

  private void add(Subject subject, String written, String other, String near) {
    Kinds.State state = other == null ? Kinds.State.mistake : Kinds.State.exists;
    details.addOpenName(subject, written, state, other == null ? near : other);
  }

  private Spellings tables() {
    if (tables == null) tables = new Spellings(resolver.tableNames());
    return tables;
  }

  private Spellings measures() {
    if (measures == null) measures = new Spellings(resolver.measureNames());
    return measures;
  }

  private Spellings columnsOf(String table) {
    ModelObject dimension = resolver.dimensionOf(table);
    return columnsOfTables.computeIfAbsent(
        dimension, d -> new Spellings(resolver.columnsOf(table).stream().map(ModelObject::name).toList()));
  }

  private Map<String, ModelObject> columns() {
    if (columns != null) return columns;
    columns = new HashMap<>();
    for (String table : resolver.tableNames())
      for (ModelObject column : resolver.columnsOf(table))
        columns.putIfAbsent(Names.fold(column.name()), column);
    return columns;
  }
}

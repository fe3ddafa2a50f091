package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/** The value of a table expression: its columns with what each comes from. */
final class DaxTable {
  /** `origin` is the table of the model by whose name the column can be called too; null for a made one. */
  record Column(String name, ModelNames.Table origin, Sources sources) {
    Column of(Sources others) {
      return new Column(name, origin, others);
    }
  }

  /** A table of which nothing is known. */
  static final DaxTable UNKNOWN = new DaxTable(null, List.of(), false, Sources.NONE);

  /** The table whose columns this one has as well; null for none. */
  private final DaxTable base;
  private final List<Column> own;
  /** Whether no columns but these can be there. */
  final boolean known;
  /** The tables of the model whose rows it has. */
  final Sources rows;
  private Map<String, Column> named;

  private DaxTable(DaxTable base, List<Column> own, boolean known, Sources rows) {
    this.base = base;
    this.own = own;
    this.known = known;
    this.rows = rows;
  }

  static DaxTable of(ModelNames.Table table) {
    List<Column> columns = new ArrayList<>(table.columns.size());
    table.columns.forEach((name, column) -> columns.add(new Column(name, table, Sources.of(column))));
    return new DaxTable(null, columns, true, Sources.of(table.dimension));
  }

  static DaxTable of(List<Column> columns) { return new DaxTable(null, columns, true, Sources.NONE); }

  DaxTable plus(List<Column> made) { return new DaxTable(this, made, known, rows); }

  /** The columns of several tables side by side. */
  static DaxTable joined(List<DaxTable> tables) {
    List<Column> columns = new ArrayList<>();
    List<Sources> rows = new ArrayList<>();
    boolean known = true;
    for (DaxTable table : tables) {
      columns.addAll(table.columns());
      rows.add(table.rows);
      known &= table.known;
    }
    return new DaxTable(null, columns, known, Sources.all(rows));
  }

  /** The rows of several tables one below the other: columns belong together by position. */
  static DaxTable united(List<DaxTable> tables) {
    List<List<Column>> all = new ArrayList<>();
    List<Sources> rows = new ArrayList<>();
    boolean known = true;
    int width = Integer.MAX_VALUE;
    for (DaxTable table : tables) {
      all.add(table.columns());
      rows.add(table.rows);
      known &= table.known;
      width = Math.min(width, table.columns().size());
    }
    List<Column> columns = new ArrayList<>();
    for (int i = 0; !all.isEmpty() && i < width; ++i) {
      List<Sources> sources = new ArrayList<>();
      for (List<Column> one : all) sources.add(one.get(i).sources());
      columns.add(all.get(0).get(i).of(Sources.all(sources)));
    }
    return new DaxTable(null, columns, known, Sources.all(rows));
  }

  List<Column> columns() {
    if (base == null) return own;
    List<List<Column>> chain = new ArrayList<>();
    for (DaxTable at = this; at != null; at = at.base) chain.add(at.own);
    List<Column> columns = new ArrayList<>();
    for (int i = chain.size(); i-- > 0;) columns.addAll(chain.get(i));
    return columns;
  }

  /** The column [name]; null when there is none, or more than one that it may be. */
  Column find(String name) {
    String key = Names.fold(name);
    for (DaxTable at = this; at != null; at = at.base) {
      Column found = at.index().get(key);
      if (found != null) return found.sources() == null ? null : found;
    }
    return null;
  }

  /** Whether there is a column [name], one or more. */
  boolean has(String name) {
    String key = Names.fold(name);
    for (DaxTable at = this; at != null; at = at.base) {
      if (at.index().containsKey(key)) return true;
    }
    return false;
  }

  Column find(ModelNames.Table origin, String name) {
    String key = key(origin, name);
    for (DaxTable at = this; at != null; at = at.base) {
      Column found = at.index().get(key);
      if (found != null) return found;
    }
    return null;
  }

  private Map<String, Column> index() {
    if (named != null) return named;
    named = new HashMap<>();
    for (Column column : own) {
      Column first = named.putIfAbsent(Names.fold(column.name()), column);
      if (first != null && first.origin() != column.origin())
        named.put(Names.fold(column.name()), column.of(null));
      if (column.origin() != null) named.putIfAbsent(key(column.origin(), column.name()), column);
    }
    return named;
  }

  private static String key(ModelNames.Table origin, String name) {
    ModelObject dimension = origin.dimension;
    return Names.fold(name) + "\0" + dimension.path();
  }
}

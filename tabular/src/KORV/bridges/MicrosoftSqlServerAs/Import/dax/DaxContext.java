package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import java.util.HashMap;
import java.util.Map;

/** Where a part of an expression stands: its variables, and the rows that it is evaluated in. */
record DaxContext(Scope scope, Rows rows, DaxTable group) {
  /** `column` is the column that is named, null for any other value; `table` null for a single value. */
  record Value(Sources sources, DaxTable table, DaxTable.Column column) {
    boolean isTable() {
      return table != null || column != null;
    }

    DaxTable asTable() {
      if (table != null) return table;
      return column == null ? DaxTable.UNKNOWN : DaxTable.of(java.util.List.of(column));
    }
  }

  /** The variables of a block, or the parameters of a function, by folded name. */
  static final class Scope {
    private final Scope outer;
    private final Map<String, Value> values = new HashMap<>();

    Scope(Scope outer) { this.outer = outer; }

    void put(String name, Value value) { values.put(name, value); }

    Value find(String name) {
      for (Scope scope = this; scope != null; scope = scope.outer) {
        Value found = scope.values.get(name);
        if (found != null) return found;
      }
      return null;
    }
  }

  /** The row of a table, within the rows around it. */
  record Rows(DaxTable table, Rows outer) {}

  DaxContext in(Scope inner) {
    return new DaxContext(inner, rows, group);
  }

  DaxContext inRowsOf(DaxTable table) {
    return new DaxContext(scope, new Rows(table, rows), group);
  }

  DaxContext outside() {
    return rows == null || rows.outer == null ? this : new DaxContext(scope, rows.outer, group);
  }

  DaxContext grouping(DaxTable table) {
    return new DaxContext(scope, rows, table);
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/** Where a part of an expression stands: its variables, and the rows that it is evaluated in. */
record DaxContext(Scope scope, Rows rows, DaxTable group) {
  /** `column` is the column that is named, null for any other value; `table` null for a single value. */
  record Value(Sources sources, DaxTable table, DaxTable.Column column, Argument argument) {
    Value(Sources sources, DaxTable table, DaxTable.Column column) {
      this(sources, table, column, null);
    }

    boolean isTable() {
      return table != null || column != null;
    }

    DaxTable asTable() {
      if (table != null) return table;
      return column == null ? DaxTable.UNKNOWN : DaxTable.of(List.of(column));
    }
  }

  /** An argument that is evaluated where a function's body uses it: what stands where the call is. */
  record Argument(DaxNode node, DaxContext context, DaxExpression caller, String callerFunction) {}

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

  /** The same place within the rows of another. */
  DaxContext within(DaxContext other) {
    List<DaxTable> inner = new ArrayList<>();
    for (Rows one = other.rows; one != null; one = one.outer) inner.add(one.table);
    Rows chain = rows;
    for (int i = inner.size(); i-- > 0;) chain = new Rows(inner.get(i), chain);
    return new DaxContext(scope, chain, other.group == null ? group : other.group);
  }

  DaxContext outside() {
    return rows == null || rows.outer == null ? this : new DaxContext(scope, rows.outer, group);
  }

  DaxContext grouping(DaxTable table) {
    return new DaxContext(scope, rows, table);
  }
}

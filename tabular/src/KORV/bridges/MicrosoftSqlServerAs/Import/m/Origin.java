package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Collections;
import java.util.Deque;
import java.util.IdentityHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;

/** What rows come from: tables of databases, and the conditions that limit which of their rows there are. */
public final class Origin {
  /**
   * Where rows come from: through a connection, by its key, a table as the text names it, or the result of a
   * query that the database runs. `query` is null for a table, and else the text as it is written.
   */
  public record Table(String connection, String schema, String name, String query) {
    public static Table named(String connection, String schema, String name) {
      return new Table(connection, schema, name, null);
    }

    public static Table ofQuery(String connection, String text) {
      return new Table(connection, "", "", text);
    }

    public boolean isQuery() {
      return query != null;
    }
  }

  /** A column of such a table. */
  public record Column(Table table, String name) {}

  /** What limits the rows, as it is written, with the columns that it asks. */
  public record Condition(String text, Set<Column> sources) {}

  static final Origin NONE = new Origin(null, "", null, List.of());

  private final Table table;
  /** Where no table tells it. */
  private final String connection;
  private final Condition condition;
  private final List<Origin> parts;

  private Origin(Table table, String connection, Condition condition, List<Origin> parts) {
    this.table = table;
    this.connection = connection;
    this.condition = condition;
    this.parts = parts;
  }

  static Origin of(Table table) { return new Origin(table, table.connection, null, List.of()); }

  static Origin through(String connection) {
    return connection.isEmpty() ? NONE : new Origin(null, connection, null, List.of());
  }

  Origin with(Origin other) {
    if (other == NONE || other == this) return this;
    return this == NONE ? other : new Origin(null, "", null, List.of(this, other));
  }

  Origin limited(Condition by) { return new Origin(null, "", by, List.of(this)); }

  /** Each origin once, however many ways lead to it, and in the order of the text. */
  private List<Origin> all() {
    List<Origin> all = new ArrayList<>();
    Set<Origin> seen = Collections.newSetFromMap(new IdentityHashMap<>());
    // Those on the stack twice stand for themselves behind all their parts: conditions come in their order.
    Deque<Origin> waiting = new ArrayDeque<>(List.of(this));
    Set<Origin> open = Collections.newSetFromMap(new IdentityHashMap<>());
    while (!waiting.isEmpty()) {
      Origin at = waiting.peek();
      if (!seen.contains(at) && open.add(at)) {
        for (int i = at.parts.size() - 1; i >= 0; --i) waiting.push(at.parts.get(i));
        continue;
      }
      waiting.pop();
      if (seen.add(at)) all.add(at);
    }
    return all;
  }

  public Set<Table> tables() {
    Set<Table> tables = new LinkedHashSet<>();
    for (Origin at : all()) {
      if (at.table != null) tables.add(at.table);
    }
    return tables;
  }

  /** The table whose rows these are, or null where there are others or none. */
  Table onlyTable() {
    Set<Table> tables = tables();
    return tables.size() == 1 ? tables.iterator().next() : null;
  }

  public Set<Condition> conditions() {
    Set<Condition> conditions = new LinkedHashSet<>();
    for (Origin at : all()) {
      if (at.condition != null) conditions.add(at.condition);
    }
    return conditions;
  }

  /** The key of the connection that the first of the rows come through; empty when nothing tells it. */
  public String connection() {
    for (Origin at : all()) {
      if (!at.connection.isEmpty()) return at.connection;
    }
    return "";
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** A set of rows that a query reads: which physical columns each of its columns comes from. */
final class Relation {
  /** Where rows are stored: the connection's key, and the table as the text names it. */
  record Table(String connection, String schema, String name) {}

  /** A column of a physical table. */
  record Column(Table table, String name) {}

  /** A column of the relation, with the physical columns that it is made of. */
  record Output(String name, Set<Column> sources) {}

  /** Columns by folded name, in order. */
  private final Map<String, Output> outputs = new LinkedHashMap<>();
  /** Relations whose columns all come along under their own names. */
  private final List<Relation> bases = new ArrayList<>(1);
  /**
   * Whether the bases' rows stand one behind the other, so that a column comes from all of them. Otherwise
   * they are joined, and a column that two of them may have is not told.
   */
  private boolean appended;
  /** Set on a relation that is a physical table. */
  private Table table;
  /** Whether the relation only renames and chooses columns. */
  private boolean plain = true;

  static Relation ofTable(Table table) {
    Relation relation = new Relation();
    relation.table = table;
    return relation;
  }

  /** A relation over others, whose columns it has beside those that are put into it. */
  static Relation over(List<Relation> bases) {
    Relation relation = new Relation();
    relation.bases.addAll(bases);
    for (Relation base : bases) relation.plain &= base.plain;
    return relation;
  }

  static Relation over(Relation base) {
    return over(List.of(base));
  }

  static Relation append(List<Relation> parts) {
    if (parts.size() == 1) return parts.get(0);
    Relation relation = over(parts);
    relation.appended = true;
    relation.plain = false;
    return relation;
  }

  void put(String name, Set<Column> sources) {
    outputs.put(Names.fold(name), new Output(name, sources));
  }

  Iterable<Output> outputs() {
    return outputs.values();
  }

  int outputCount() {
    return outputs.size();
  }

  void setComputed() {
    plain = false;
  }

  /** The key of the connection that the rows come through; empty when no table tells it. */
  String connection() {
    Relation at = this;
    while (at.table == null && !at.bases.isEmpty()) at = at.bases.get(0);
    if (at.table != null) return at.table.connection;
    for (Output output : at.outputs.values()) {
      for (Column column : output.sources) return column.table.connection;
    }
    return "";
  }

  boolean isPlain() {
    return plain;
  }

  /** The physical columns of a column; null when the relation is not known to have it. */
  Set<Column> sourcesOf(String name) {
    String folded = Names.fold(name);
    Relation at = this;
    // A chain of steps is followed in a loop: it may be as long as the text.
    while (true) {
      Output output = at.outputs.get(folded);
      if (output != null) return output.sources;
      if (at.table != null) return new LinkedHashSet<>(Set.of(new Column(at.table, name)));
      if (at.bases.size() != 1) break;
      at = at.bases.get(0);
    }
    return at.bases.isEmpty() ? null : at.fromSeveral(name);
  }

  private Set<Column> fromSeveral(String name) {
    Set<Column> found = null;
    for (Relation base : bases) {
      Set<Column> sources = base.sourcesOf(name);
      if (sources == null) continue;
      if (found == null) {
        found = new LinkedHashSet<>(sources);
      } else if (appended) {
        found.addAll(sources);
      } else {
        return null;
      }
    }
    return found;
  }
}

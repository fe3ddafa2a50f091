package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** A set of rows that a query reads: which physical columns each of its columns comes from. */
public final class Relation {
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

  /**
   * How many steps the look-ups of one query may take together. Tables that are combined with themselves over
   * and over would otherwise cost far more than their text is long.
   */
  public static final class Budget {
    private static final int LEAST = 50_000;
    private static final int PER_CHARACTER = 20;
    private long left;

    public Budget(int textLength) {
      left = LEAST + (long) PER_CHARACTER * textLength;
    }

    boolean take(int steps) {
      left -= steps;
      return left >= 0;
    }
  }

  /** A column of the relation, with the physical columns that it is made of. */
  public record Output(String name, Set<Column> sources) {}

  /** Columns by folded name, in order. */
  private final Map<String, Output> outputs = new LinkedHashMap<>();
  /** Relations whose columns all come along under their own names. */
  private final List<Relation> bases = new ArrayList<>(1);
  /**
   * Whether the bases' rows stand one behind the other, so that a column comes from all of them. Otherwise
   * they are joined, and a column that two of them may have is not told.
   */
  private boolean appended;
  /** Set on a relation that is a table of the database or the result of a query. */
  private Table table;
  /** What fromSeveral() has found, by folded name; null stands for nothing. */
  private Map<String, Set<Column>> found;
  /** Whether the relation only renames and chooses columns. */
  private boolean plain = true;

  public static Relation ofTable(Table table) {
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

  public Iterable<Output> outputs() {
    return outputs.values();
  }

  int outputCount() {
    return outputs.size();
  }

  void setComputed() {
    plain = false;
  }

  /** The key of the connection that the rows come through; empty when no table tells it. */
  public String connection() {
    Relation at = this;
    while (at.table == null && !at.bases.isEmpty()) at = at.bases.get(0);
    if (at.table != null) return at.table.connection;
    for (Output output : at.outputs.values()) {
      for (Column column : output.sources) return column.table.connection;
    }
    return "";
  }

  public boolean isPlain() {
    return plain;
  }

  /** The physical columns of a column; null when the relation is not known to have it. */
  public Set<Column> sourcesOf(String name, Budget budget) {
    String folded = Names.fold(name);
    Deque<Relation> waiting = new ArrayDeque<>(List.of(decisive(folded)));
    // Relations over several others wait until those are known: a stack of our own, because the depth is the
    // text's. What one of them has found it keeps, because many others may ask it.
    while (!waiting.isEmpty()) {
      Relation at = waiting.peek();
      if (!at.isOpen(folded)) {
        waiting.pop();
        continue;
      }
      int before = waiting.size();
      for (Relation base : at.bases) {
        Relation next = base.decisive(folded);
        if (next.isOpen(folded)) waiting.push(next);
      }
      if (!budget.take(at.bases.size())) return null;
      if (waiting.size() == before && !at.findInSeveral(name, folded, budget)) return null;
    }
    return decisive(folded).answer(name, folded);
  }

  /** The relation that decides where a column comes from: behind those that only take over from one other. */
  private Relation decisive(String folded) {
    Relation at = this;
    while (!at.outputs.containsKey(folded) && at.table == null && at.bases.size() == 1) at = at.bases.get(0);
    return at;
  }

  /** Whether a column must be looked for in several other relations, and was not yet. */
  private boolean isOpen(String folded) {
    return !outputs.containsKey(folded) && table == null && bases.size() > 1
        && (found == null || !found.containsKey(folded));
  }

  private Set<Column> answer(String name, String folded) {
    Output output = outputs.get(folded);
    if (output != null) return output.sources;
    if (table != null) return new LinkedHashSet<>(Set.of(new Column(table, name)));
    return found == null ? null : found.get(folded);
  }

  /** Puts together what the bases, which all know their answers, say; false when that costs too much. */
  private boolean findInSeveral(String name, String folded, Budget budget) {
    Set<Column> all = null;
    boolean told = true;
    for (Relation base : bases) {
      Set<Column> sources = base.decisive(folded).answer(name, folded);
      if (sources == null) continue;
      if (!budget.take(sources.size())) return false;
      told &= all == null || appended;
      if (all == null) all = new LinkedHashSet<>();
      all.addAll(sources);
    }
    if (found == null) found = new HashMap<>(2);
    found.put(folded, told ? all : null);
    return true;
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Collection;
import java.util.Deque;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.Predicate;

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

  /** What stands in a column's cells where it is more than a plain value. */
  interface Content {}

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

    public Budget(int textLength) { left = LEAST + (long) PER_CHARACTER * textLength; }

    boolean take(int steps) {
      left -= steps;
      return left >= 0;
    }

    /** For a text that the query brings with it. */
    void add(int textLength) { left += (long) PER_CHARACTER * textLength; }
  }

  /**
   * A column of the relation, with the physical columns that it is made of; `sources` is null where the
   * relation no longer has it. `content` is what stands in its cells where that is a table, list or record,
   * or null.
   */
  public record Output(String name, Set<Column> sources, Content content) {}

  /** A column in one of the relations that a look-up passes, where it may have another name. */
  private record Place(Relation relation, String name, boolean ends) {
    boolean isOpen() {
      return !ends && relation.bases.size() > 1 && !relation.found.containsKey(name);
    }
  }

  /** Columns by name, in order. Names are exact, as in the language: "b" and "B" are two columns. */
  private final Map<String, Output> outputs = new LinkedHashMap<>();
  /** Relations whose columns come along under their own names. */
  private final List<Relation> bases = new ArrayList<>(1);
  /**
   * Whether the bases' rows stand one behind the other, so that a column comes from all of them. Otherwise
   * they are joined, and a column that two of them may have is not told.
   */
  private boolean appended;
  /** Set on a relation that is a table of the database or the result of a query. */
  private Table table;
  /** Of a relation that has no other way to tell. */
  private String connection = "";
  /** Those columns of the base that come along; null for all. */
  private Set<String> kept;
  /** Names of columns that the text says the base has. */
  private Set<String> mentioned = Set.of();
  /** Whether there may be columns besides those of the base: only those that it surely has come along. */
  private boolean doubtful;
  /** Whether nothing is known of the columns but what is put. */
  private boolean opaque;
  /** What stands before the base's names, or null. */
  private String prefix;
  /** What look-ups have found here, by name; null stands for nothing. */
  private final Map<String, Output> found = new HashMap<>(2);
  /** Whether the relation only renames and chooses columns. */
  private boolean plain = true;
  /** The first step that is not understood, or null. */
  private MFault fault;

  public static Relation ofTable(Table table) {
    Relation relation = new Relation();
    relation.table = table;
    return relation;
  }

  /** A relation over others, whose columns it has beside those that are put into it. */
  static Relation over(List<Relation> bases) {
    Relation relation = new Relation();
    relation.bases.addAll(bases);
    for (Relation base : bases) {
      relation.plain &= base.plain;
      if (relation.fault == null) relation.fault = base.fault;
    }
    return relation;
  }

  static Relation over(Relation base) { return over(List.of(base)); }

  /** Of the base only the columns of these names. */
  static Relation chosen(Relation base, Collection<String> names) {
    Relation relation = over(base);
    relation.kept = new LinkedHashSet<>(names);
    return relation;
  }

  /** A relation whose columns are only those that are put into it, made out of others or of nothing. */
  static Relation opaque(List<Relation> bases, String connection) {
    Relation relation = over(bases);
    relation.opaque = true;
    relation.plain = false;
    relation.connection = connection;
    return relation;
  }

  static Relation append(List<Relation> parts) {
    if (parts.size() == 1) return parts.get(0);
    Relation relation = over(parts);
    relation.appended = true;
    relation.plain = false;
    return relation;
  }

  void put(String name, Set<Column> sources) { put(name, new Output(name, sources, null)); }

  void put(String name, Output output) {
    outputs.put(name, new Output(name, output.sources, output.content));
  }

  /** The column is there no more, whatever the base has. */
  void leaveOut(String name) { put(name, (Set<Column>) null); }

  void setComputed() { plain = false; }

  void setDoubtful() {
    doubtful = true;
    plain = false;
  }

  void setPrefix(String text) { prefix = text; }

  void mention(Collection<String> names) {
    // The set of no names cannot be added to, not even nothing.
    if (names.isEmpty()) return;
    if (mentioned.isEmpty()) mentioned = new HashSet<>();
    mentioned.addAll(names);
  }

  /** Keeps the first of a query's faults: what comes behind it may only follow from it. */
  Relation blame(MFault step) {
    if (fault == null) fault = step;
    return this;
  }

  MFault fault() { return fault; }

  /** The columns that were put and are still there. */
  public Iterable<Output> outputs() {
    return outputs.values().stream().filter(output -> output.sources != null)::iterator;
  }

  /** The key of the connection that the rows come through; empty when no table tells it. */
  public String connection() {
    Deque<Relation> waiting = new ArrayDeque<>(List.of(this));
    Set<Relation> seen = new HashSet<>();
    while (!waiting.isEmpty()) {
      Relation at = waiting.pop();
      if (!seen.add(at)) continue;
      if (at.table != null) return at.table.connection;
      if (!at.connection.isEmpty()) return at.connection;
      for (int i = at.bases.size() - 1; i >= 0; --i) waiting.push(at.bases.get(i));
      if (!at.bases.isEmpty()) continue;
      for (Output output : at.outputs()) {
        for (Column column : output.sources) return column.table.connection;
      }
    }
    return "";
  }

  /** The table whose rows these are, or null where there are others or none. */
  Table wholeTable() {
    Relation at = this;
    while (at.table == null && at.bases.size() == 1 && !at.opaque) at = at.bases.get(0);
    return at.table;
  }

  public boolean isPlain() { return plain; }

  /** The physical columns of a column; null when the relation is not known to have it. */
  public Set<Column> sourcesOf(String name, Budget budget) {
    Output output = find(name, budget);
    return output == null ? null : output.sources;
  }

  /** A column; null when the relation is not known to have it. */
  Output find(String name, Budget budget) {
    Place start = follow(name, budget);
    Deque<Place> waiting = new ArrayDeque<>(List.of(start));
    // Relations over several others wait until those are known: a stack of our own, because the depth is the
    // text's. What one of them has found it keeps, because many others may ask it.
    while (!waiting.isEmpty()) {
      Place at = waiting.peek();
      if (!at.isOpen()) {
        waiting.pop();
        continue;
      }
      int before = waiting.size();
      for (Relation base : at.relation.bases) {
        Place next = base.follow(at.name, budget);
        if (next.isOpen()) waiting.push(next);
      }
      if (!budget.take(at.relation.bases.size())) return null;
      if (waiting.size() == before && !at.relation.findInSeveral(at.name, budget)) return null;
    }
    Output output = start.relation.answer(start);
    if (budget.take(0)) found.put(name, output);
    return output;
  }

  /** Where it is decided what a column comes from: behind relations that only take over from one other. */
  private Place follow(String name, Budget budget) {
    Relation at = this;
    String own = name;
    while (!at.outputs.containsKey(own) && !at.found.containsKey(own)) {
      boolean passes = !at.opaque && (at.kept == null || at.kept.contains(own));
      if (passes && at.prefix != null) {
        passes = own.startsWith(at.prefix) && own.length() > at.prefix.length();
        if (passes) own = own.substring(at.prefix.length());
      }
      if (passes && at.doubtful) passes = at.bases.stream().anyMatch(sureOf(own, budget));
      if (!passes || !budget.take(1)) return new Place(at, own, true);
      if (at.table != null || at.bases.size() != 1) break;
      at = at.bases.get(0);
    }
    return new Place(at, own, at.outputs.containsKey(own) || at.table != null);
  }

  private static Predicate<Relation> sureOf(String name, Budget budget) {
    return base -> base.surelyHas(name, budget);
  }

  /** Whether the text itself says that there is such a column; of a table of the database it does not. */
  private boolean surelyHas(String name, Budget budget) {
    Relation at = this;
    while (budget.take(1)) {
      Output output = at.outputs.get(name);
      if (output != null) return output.sources != null;
      if (at.mentioned.contains(name) || at.kept != null && at.kept.contains(name)) return true;
      if (at.opaque || at.kept != null || at.prefix != null || at.bases.size() != 1) return false;
      at = at.bases.get(0);
    }
    return false;
  }

  private Output answer(Place place) {
    Output output = outputs.get(place.name);
    if (output != null) return output.sources == null ? null : output;
    if (found.containsKey(place.name)) return found.get(place.name);
    if (table == null || !place.ends) return null;
    return new Output(place.name, new LinkedHashSet<>(Set.of(new Column(table, place.name))), null);
  }

  /** Puts together what the bases, which all know their answers, say; false when that costs too much. */
  private boolean findInSeveral(String name, Budget budget) {
    List<Output> answers = new ArrayList<>();
    List<Output> sure = new ArrayList<>();
    Set<Column> all = new LinkedHashSet<>();
    for (Relation base : bases) {
      Place place = base.follow(name, budget);
      Output output = place.relation.answer(place);
      if (output == null) continue;
      if (!budget.take(output.sources.size() + 1)) return false;
      answers.add(output);
      if (!appended && base.surelyHas(name, budget)) sure.add(output);
      all.addAll(output.sources);
    }
    // Joined tables have no two columns of one name: the one that surely has it is the only one.
    if (sure.size() == 1) answers = sure;
    Output several = answers.isEmpty() || !appended ? null : new Output(name, all, null);
    found.put(name, answers.size() == 1 ? answers.get(0) : several);
    return true;
  }

  /** The names of all columns, or null where the text does not tell them. */
  Set<String> names(Budget budget) {
    Set<String> hidden = new HashSet<>();
    Set<String> names = new LinkedHashSet<>();
    Relation at = this;
    while (budget.take(1 + at.outputs.size())) {
      for (Map.Entry<String, Output> entry : at.outputs.entrySet()) {
        if (hidden.add(entry.getKey()) && entry.getValue().sources != null) names.add(entry.getValue().name);
      }
      if (at.kept != null) {
        for (String name : at.kept) {
          if (hidden.add(name)) names.add(name);
        }
        return names;
      }
      if (at.opaque && at.bases.isEmpty() && at.connection.isEmpty()) return names;
      if (at.opaque || at.doubtful || at.prefix != null || at.bases.size() != 1) return null;
      at = at.bases.get(0);
    }
    return null;
  }
}

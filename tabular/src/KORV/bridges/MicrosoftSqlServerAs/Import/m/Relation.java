package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Collection;
import java.util.Comparator;
import java.util.Deque;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** A set of rows that a query reads: which physical columns each of its columns comes from. */
public final class Relation {
  /** What stands in a column's cells where it is more than a plain value. */
  interface Content {
    /** The cells of this and other columns one behind the other; null when that is not known. */
    Content appended(Content other);
  }

  /**
   * A column of the relation, with the physical columns that it is made of; `sources` is null where they are
   * not known. `content` is what stands in its cells where that is a table, list or record, or null.
   */
  public record Output(String name, Set<Origin.Column> sources, Content content) {
    boolean isKnown() {
      return sources != null;
    }

    Output called(String other) {
      return new Output(other, sources, content);
    }
  }

  static Output unknown(String name) { return new Output(name, null, null); }

  /**
   * A column that a step has told of, or that is there no more, then without an output. Its place among the
   * others begins at `begin`, and what takes its place has `width` to share.
   */
  private record Entry(Output output, double begin, double width) {}

  /** So much of a place is needed that those in it have an order. */
  private static final double LEAST_WIDTH = 1e-9;

  /** What the names mean that no step has told of. */
  private enum Others { NONE, UNKNOWN, OF_TABLE, PREFIXED, APPENDED, BESIDE }

  /**
   * `parts` stand one behind the other, or are the one whose names have the prefix, or two side by side of
   * which the first has all names with it.
   */
  private record Rest(Others kind, Origin.Table table, String prefix, List<Relation> parts) {
    static final Rest NONE = new Rest(Others.NONE, null, "", List.of());
    static final Rest UNKNOWN = new Rest(Others.UNKNOWN, null, "", List.of());
  }

  /** A name that is looked for in a relation. */
  private record Place(Relation relation, String name) {
    @Override
    public boolean equals(Object other) {
      return other instanceof Place place && place.relation == relation && place.name.equals(name);
    }

    @Override
    public int hashCode() {
      return System.identityHashCode(relation) * 31 + name.hashCode();
    }
  }

  private MNameMap<Entry> columns = MNameMap.empty();
  private Rest rest = Rest.NONE;
  private double end;
  /** Whether all columns are in `columns`, in an order that is known. */
  private boolean ordered = true;
  private Origin origin = Origin.NONE;
  /** Whether the relation only renames and chooses columns of one table. */
  private boolean plain = true;
  /** The first step that is not understood, or null. */
  private MFault fault;

  private Relation() {}

  public static Relation ofTable(Origin.Table table) {
    Relation relation = new Relation();
    relation.rest = new Rest(Others.OF_TABLE, table, "", List.of());
    relation.origin = Origin.of(table);
    return relation;
  }

  /** A relation without columns yet, made of values. */
  static Relation made() {
    Relation relation = new Relation();
    relation.plain = false;
    return relation;
  }

  /** A relation of which only is known what its rows come from. */
  static Relation opaque(List<Relation> bases, String connection) {
    Relation relation = made();
    relation.rest = Rest.UNKNOWN;
    relation.origin = Origin.through(connection);
    for (Relation base : bases) relation.readAlso(base);
    return relation;
  }

  /** The same rows and columns, which steps then change. */
  static Relation over(Relation base) {
    Relation relation = new Relation();
    relation.columns = base.columns;
    relation.rest = base.rest;
    relation.end = base.end;
    relation.ordered = base.ordered;
    relation.origin = base.origin;
    relation.plain = base.plain;
    relation.fault = base.fault;
    return relation;
  }

  /** The same, of which steps make more than a choice. */
  static Relation computedFrom(Relation base) {
    Relation relation = over(base);
    relation.plain = false;
    return relation;
  }

  /** The same rows without columns yet. */
  static Relation rowsOf(Relation base) {
    Relation relation = over(base);
    relation.columns = MNameMap.empty();
    relation.rest = Rest.NONE;
    relation.ordered = true;
    return relation;
  }

  /** Of the base only the columns of these names. */
  static Relation chosen(Relation base, Collection<String> names, Budget budget) {
    Relation relation = rowsOf(base);
    for (String name : names) {
      Output output = base.find(name, budget);
      relation.put(name, output == null ? unknown(name) : output);
    }
    return relation;
  }

  static Relation append(List<Relation> parts) {
    if (parts.size() == 1) return parts.get(0);
    Relation relation = made();
    relation.rest = new Rest(Others.APPENDED, null, "", List.copyOf(new LinkedHashSet<>(parts)));
    relation.ordered = false;
    for (Relation part : parts) relation.readAlso(part);
    return relation;
  }

  /** The columns of both side by side; one that either may have is not known. */
  static Relation joined(Relation left, Relation right, Budget budget) {
    Relation relation = computedFrom(left);
    relation.readAlso(right);
    for (Entry entry : left.columns.values()) {
      Output own = entry.output;
      if (own != null && right.hasSurely(own.name)) relation.put(own.name, unknown(own.name));
    }
    for (Entry entry : right.inOrder()) {
      Entry other = left.columns.get(entry.output.name);
      if (other == null || other.output == null) relation.put(entry.output.name, entry.output);
      if (!budget.take(1)) break;
    }
    relation.rest = beside(left, right);
    relation.ordered = left.ordered && right.ordered;
    return relation;
  }

  /** A prefix is given so that names of the other table do not begin with it. */
  private static Rest beside(Relation left, Relation right) {
    if (right.rest.kind == Others.NONE) return left.rest;
    if (left.rest.kind == Others.NONE) return right.rest;
    boolean rightHas = right.rest.kind == Others.PREFIXED;
    if (rightHas == (left.rest.kind == Others.PREFIXED)) return Rest.UNKNOWN;
    List<Relation> sides = rightHas ? List.of(right, left) : List.of(left, right);
    return new Rest(Others.BESIDE, null, sides.get(0).rest.prefix, sides);
  }

  void put(String name, Set<Origin.Column> sources) { put(name, new Output(name, sources, null)); }

  /** A column in its old place, or a new one behind the others. */
  void put(String name, Output output) {
    Entry known = columns.get(name);
    boolean there = known != null && known.output != null;
    Entry entry = new Entry(output.called(name), there ? known.begin : end, there ? known.width : 1);
    columns = columns.with(name, entry);
    if (!there) ++end;
  }

  /** The column is there no more, whatever stands below. */
  void leaveOut(String name) { columns = columns.with(name, new Entry(null, 0, 0)); }

  /** Columns in the place of one that is there no more. */
  void replace(String name, List<Output> by) {
    Entry known = columns.get(name);
    leaveOut(name);
    if (known == null || known.output == null) {
      for (Output output : by) put(output.name, output);
      return;
    }
    double width = known.width / Math.max(1, by.size());
    if (width < LEAST_WIDTH) ordered = false;
    double begin = known.begin;
    for (Output output : by) {
      columns = columns.with(output.name, new Entry(output, begin, width));
      begin += width;
    }
  }

  /** Columns under new names, each in its old place. */
  void rename(Map<String, Output> renamed, Budget budget) {
    MNameMap<Entry> before = columns;
    for (String old : renamed.keySet()) leaveOut(old);
    for (Map.Entry<String, Output> one : renamed.entrySet()) {
      Entry known = before.get(one.getKey());
      boolean there = known != null && known.output != null && budget.take(1);
      Entry entry = new Entry(one.getValue(), there ? known.begin : end++, there ? known.width : 1);
      columns = columns.with(one.getValue().name, entry);
    }
  }

  /** These columns share their places in this order. */
  void reorder(List<String> names) {
    List<Entry> entries = new ArrayList<>();
    for (String name : new LinkedHashSet<>(names)) {
      Entry entry = columns.get(name);
      if (entry != null && entry.output != null) entries.add(entry);
    }
    List<Entry> places = new ArrayList<>(entries);
    places.sort(Comparator.comparingDouble(Entry::begin));
    for (int i = 0; i < entries.size(); ++i) {
      Output output = entries.get(i).output;
      columns = columns.with(output.name, new Entry(output, places.get(i).begin, places.get(i).width));
    }
  }

  /** The text says that there are these columns. */
  void mention(Collection<String> names, Budget budget) {
    for (String name : names) {
      if (columns.get(name) != null) continue;
      Output output = find(name, budget);
      if (output != null) put(name, output);
    }
  }

  void setComputed() { plain = false; }

  /** The order of the columns is not known any more. */
  void setUnordered() { ordered = false; }

  /** There may be columns that are not known: only those come along that the text has surely told of. */
  void setDoubtful(Budget budget) {
    List<String> names = names(budget);
    if (names != null) mention(names, budget);
    rest = Rest.UNKNOWN;
    plain = false;
  }

  void setPrefix(String prefix) {
    Relation base = over(this);
    columns = MNameMap.empty();
    for (Entry entry : base.columns.values()) {
      if (entry.output == null) continue;
      String name = prefix + entry.output.name;
      columns = columns.with(name, new Entry(entry.output.called(name), entry.begin, entry.width));
    }
    if (base.rest.kind != Others.NONE) rest = new Rest(Others.PREFIXED, null, prefix, List.of(base));
  }

  /** Rows of another relation have a part in these. */
  void readAlso(Relation other) {
    origin = origin.with(other.origin);
    if (fault == null) fault = other.fault;
  }

  void readAlso(Origin other) { origin = origin.with(other); }

  void limit(Origin.Condition condition) {
    origin = origin.limited(condition);
    plain = false;
  }

  /** Keeps the first of a query's faults: what comes behind it may only follow from it. */
  Relation blame(MFault step) {
    if (fault == null) fault = step;
    return this;
  }

  MFault fault() { return fault; }

  /** What the rows come from. */
  public Origin origin() { return origin; }

  /** The columns that the text tells of, in their order. */
  public List<Output> outputs() { return inOrder().stream().map(Entry::output).toList(); }

  private List<Entry> inOrder() {
    List<Entry> entries = new ArrayList<>(columns.values());
    entries.removeIf(entry -> entry.output == null);
    entries.sort(Comparator.comparingDouble(Entry::begin));
    return entries;
  }

  /** The key of the connection that the rows come through; empty when nothing tells it. */
  public String connection() { return origin.connection(); }

  public boolean isPlain() { return plain; }

  /** The physical columns of a column; null when they are not known. */
  public Set<Origin.Column> sourcesOf(String name, Budget budget) {
    Output output = find(name, budget);
    return output == null ? null : output.sources;
  }

  boolean hasSurely(String name) {
    Entry entry = columns.get(name);
    return entry != null && entry.output != null;
  }

  /** A column, without sources when they are not known; null when there surely is none. */
  Output find(String name, Budget budget) {
    List<Output> answers = new ArrayList<>(1);
    Deque<Place> waiting = new ArrayDeque<>(List.of(new Place(this, name)));
    Set<Place> seen = rest.parts.isEmpty() ? null : new HashSet<>();
    while (!waiting.isEmpty()) {
      Place at = waiting.pop();
      if (seen != null && !seen.add(at)) continue;
      if (!budget.take(1)) return unknown(name);
      at.relation.answer(at.name, answers, waiting);
    }
    return together(name, answers, budget);
  }

  private void answer(String name, List<Output> answers, Deque<Place> waiting) {
    Entry entry = columns.get(name);
    if (entry != null) {
      if (entry.output != null) answers.add(entry.output);
      return;
    }
    switch (rest.kind) {
      case UNKNOWN -> answers.add(unknown(name));
      case OF_TABLE -> answers.add(new Output(name, Set.of(new Origin.Column(rest.table, name)), null));
      case PREFIXED -> {
        boolean can = name.startsWith(rest.prefix) && name.length() > rest.prefix.length();
        if (can) waiting.push(new Place(rest.parts.get(0), name.substring(rest.prefix.length())));
      }
      case BESIDE -> waiting.push(new Place(rest.parts.get(name.startsWith(rest.prefix) ? 0 : 1), name));
      case APPENDED -> {
        for (int i = rest.parts.size() - 1; i >= 0; --i) waiting.push(new Place(rest.parts.get(i), name));
      }
      default -> {
      }
    }
  }

  private static Output together(String name, List<Output> answers, Budget budget) {
    if (answers.isEmpty()) return null;
    if (answers.size() == 1) return answers.get(0).called(name);
    Set<Origin.Column> all = new LinkedHashSet<>();
    Content content = answers.get(0).content;
    boolean known = false;
    for (Output output : answers) {
      known |= output.isKnown();
      if (output.isKnown() && budget.take(output.sources.size())) all.addAll(output.sources);
      if (output != answers.get(0)) content = content == null ? null : content.appended(output.content);
    }
    return known ? new Output(name, all, content) : unknown(name);
  }

  /** The names of all columns in their order, or null where the text does not tell them. */
  List<String> names(Budget budget) {
    Map<String, Boolean> names = new LinkedHashMap<>();
    Deque<Relation> waiting = new ArrayDeque<>(List.of(this));
    Set<Relation> seen = new HashSet<>();
    while (!waiting.isEmpty()) {
      Relation at = waiting.pop();
      if (!seen.add(at)) continue;
      if (at.rest.kind == Others.APPENDED && at.columns.isEmpty()) {
        for (int i = at.rest.parts.size() - 1; i >= 0; --i) waiting.push(at.rest.parts.get(i));
        continue;
      }
      if (at.rest.kind != Others.NONE || !at.ordered) return null;
      List<Entry> entries = at.inOrder();
      if (!budget.take(1 + entries.size())) return null;
      for (Entry entry : entries) names.put(entry.output.name, true);
    }
    return new ArrayList<>(names.keySet());
  }
}

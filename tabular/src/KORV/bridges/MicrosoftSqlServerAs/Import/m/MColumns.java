package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** Functions that choose, name, add and change columns of one table. */
final class MColumns {
  private static final String COMPUTED = "computes names of columns";
  /** What to do with columns that are not there: MissingField.Ignore and MissingField.UseNull. */
  static final String IGNORE = "1";
  static final String USE_NULL = "2";
  private static final int MOST_PARTS = 1000;

  private MColumns() {}

  /** The same columns; what argument `place` lists is surely there. */
  static MValue same(MCall call, int place) {
    if (call.argument(0).is(MValue.Kind.SOURCE)) return call.argument(0);
    if (call.table(0) == null) return call.evaluator.mixed(List.of(call.argument(0)));
    Relation relation = Relation.over(call.table(0));
    if (place > 0) relation.mention(listed(call.argument(place)), call.budget());
    return MValue.table(relation);
  }

  /** "A", {"A", "B"}, {{"A", x}, {"B", y}}: the names, as far as they are constant. */
  private static List<String> listed(MValue value) {
    List<String> names = new ArrayList<>();
    if (value.is(MValue.Kind.TEXT)) names.add(value.text);
    if (!value.isWholeList()) return names;
    for (MValue item : value.items) {
      MValue name = item.isWholeList() && !item.items.isEmpty() ? item.items.get(0) : item;
      if (name.is(MValue.Kind.TEXT)) names.add(name.text);
    }
    return names;
  }

  static MValue select(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> names = call.texts(1);
    if (names != null) return MValue.table(chosen(call, from, names));
    Relation relation = Relation.over(from);
    relation.setUnordered();
    return MValue.table(relation);
  }

  private static Relation chosen(MCall call, Relation from, List<String> names) {
    List<String> there = names;
    if (isMissing(call, IGNORE))
      there = names.stream().filter(name -> call.find(from, name) != null).toList();
    Relation relation = Relation.chosen(from, there, call.budget());
    boolean nulls = isMissing(call, USE_NULL);
    for (String name : nulls ? names : List.<String>of())
      if (call.find(from, name) == null) relation.put(name, Set.of());
    // Of a table of the database nobody knows which of them it has.
    if (isMissing(call, IGNORE) && !there.stream().allMatch(from::hasSurely)) relation.setUnordered();
    return relation;
  }

  /** What the call says about columns that are not there. */
  private static boolean isMissing(MCall call, String what) { return what.equals(call.argument(2).text); }

  static MValue remove(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    Relation relation = Relation.over(call.table(0));
    for (String name : listed(call.argument(1))) relation.leaveOut(name);
    // Others may be gone too, so that the places of those that are left are not known.
    if (call.texts(1) == null) relation.setUnordered();
    return MValue.table(relation);
  }

  /** Those that are listed share their places in the order of the list; the others stay where they are. */
  static MValue reorder(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    Relation relation = Relation.over(call.table(0));
    List<String> names = call.texts(1);
    if (names == null) relation.setUnordered();
    relation.mention(listed(call.argument(1)), call.budget());
    if (names != null) relation.reorder(names);
    return MValue.table(relation);
  }

  /** The names become the first row, and the columns are numbered. */
  static MValue demoteHeaders(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> names = from.names(call.budget());
    if (names == null) return call.unknownColumns("numbers the columns");
    Relation relation = Relation.rowsOf(from);
    relation.setComputed();
    int number = 0;
    for (String name : names) call.put(relation, "Column" + ++number, call.find(from, name));
    return MValue.table(relation);
  }

  /** {{"old", "new"}, ...}, or one pair alone. */
  static MValue rename(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<List<MValue>> pairs = call.tuples(1);
    if (pairs == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.over(from);
    // All at once, because names may change places.
    Map<String, Relation.Output> renamed = new LinkedHashMap<>();
    for (List<MValue> pair : pairs) {
      if (isMissing(call, IGNORE) && call.find(from, pair.get(0).text) == null) continue;
      String name = pair.get(1).constantText();
      if (name == null) {
        relation.leaveOut(pair.get(0).text);
        relation.setDoubtful(call.budget());
        relation.blame(call.fault(COMPUTED));
        continue;
      }
      Relation.Output old = call.find(from, pair.get(0).text);
      if (old == null)
        old = isMissing(call, USE_NULL) ? call.output(name, MValue.UNKNOWN) : Relation.unknown(name);
      renamed.put(pair.get(0).text, old.called(name));
    }
    relation.rename(renamed, call.budget());
    return MValue.table(relation);
  }

  /** Table.TransformColumnNames(table, function, options): the names that are known get their new ones. */
  static MValue transformNames(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    if (call.has(2)) return call.unknownColumns(COMPUTED);
    List<String> names = from.names(call.budget());
    boolean exact = names != null;
    if (!exact) names = from.outputs().stream().map(Relation.Output::name).toList();
    Relation relation = Relation.rowsOf(from);
    for (String old : names) {
      String name = call.apply(call.argument(1), MValue.text(old)).constantText();
      exact &= name != null;
      if (name != null) call.put(relation, name, relation.hasSurely(name) ? null : call.find(from, old));
    }
    if (!exact) {
      relation.setDoubtful(call.budget());
      relation.blame(call.fault(COMPUTED));
    }
    return MValue.table(relation);
  }

  static MValue prefix(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    if (call.text(1) == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.over(call.table(0));
    relation.setPrefix(call.text(1) + ".");
    return MValue.table(relation);
  }

  /** A new column is made of what its function makes of a row. */
  static MValue add(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    Relation relation = Relation.over(from);
    return added(call, relation, call.text(1), call.apply(call.argument(2), MValue.row(from)));
  }

  static MValue addIndex(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    return added(call, Relation.over(call.table(0)), call.text(1), MValue.UNKNOWN);
  }

  /** Table.AddRankColumn(table, name, what is compared): ranks are made of what is compared. */
  static MValue addRank(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    MValue compared = call.cells(from, listed(call.argument(2)));
    if (call.argument(2).is(MValue.Kind.FUNCTION)) compared = ofRow(call, call.argument(2), from);
    return added(call, Relation.over(from), call.text(1), compared);
  }

  /** Table.AddFuzzyClusterColumn(table, column, name): each cluster is called like one of its values. */
  static MValue addCluster(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    MValue cells = call.text(1) == null ? MValue.UNKNOWN : call.cells(from, List.of(call.text(1)));
    return added(call, Relation.over(from), call.text(2), cells);
  }

  /** Table.CombineColumnsToRecord(table, name, columns). */
  static MValue combineToRecord(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> columns = call.texts(2);
    if (columns == null) return call.unknownColumns(COMPUTED);
    Map<String, MValue> fields = new LinkedHashMap<>();
    for (String column : columns) fields.put(column, MCall.cell(call.find(from, column)));
    Relation relation = Relation.over(from);
    relation.setUnordered();
    return added(call, relation, call.text(1), MValue.record(fields));
  }

  /** With a name that is not known any column may be the new one. */
  private static MValue added(MCall call, Relation relation, String name, MValue cells) {
    relation.setComputed();
    if (name != null) {
      call.put(relation, name, cells);
    } else {
      relation.setDoubtful(call.budget());
      relation.blame(call.fault(COMPUTED));
    }
    return MValue.table(relation);
  }

  static MValue duplicate(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    Relation relation = Relation.over(from);
    Relation.Output old = call.text(1) == null ? null : call.find(from, call.text(1));
    if (call.text(2) == null) {
      relation.setDoubtful(call.budget());
      relation.blame(call.fault(COMPUTED));
    } else {
      call.put(relation, call.text(2), old);
    }
    return MValue.table(relation);
  }

  /** {{"A", each ..., type}, ...}: a cell's new value is made of the old one, and of what else it names. */
  static MValue transform(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    Relation relation = Relation.over(from);
    List<List<MValue>> changes = call.tuples(1);
    // Names stay the same, so that of changes which are not known only the further sources are missing.
    if (changes == null) relation.setComputed();
    for (List<MValue> change : changes == null ? List.<List<MValue>>of() : changes) {
      Relation.Output old = call.find(from, change.get(0).text);
      if (old == null || !old.isKnown()) continue;
      MValue cell = MCall.cell(old);
      boolean known = change.get(1).is(MValue.Kind.FUNCTION);
      MValue made = known ? call.apply(change.get(1), cell) : cell;
      call.put(relation, old.name(), made);
      if (!call.evaluator.union(List.of(made)).equals(old.sources())) relation.setComputed();
    }
    return MValue.table(relation);
  }

  /** Table.ReplaceValue(table, old, new, replacer, columns): a new value may come from another column. */
  static MValue replace(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    Relation relation = Relation.over(from);
    MValue old = ofRow(call, call.argument(1), from);
    MValue value = ofRow(call, call.argument(2), from);
    List<String> columns = listed(call.argument(4));
    relation.mention(columns, call.budget());
    for (String column : columns) {
      Relation.Output output = call.find(from, column);
      if (output == null || !output.isKnown()) continue;
      MValue cell = MCall.cell(output);
      boolean known = call.argument(3).is(MValue.Kind.FUNCTION);
      MValue made = known ? call.apply(call.argument(3), cell, old, value)
                          : call.evaluator.mixed(List.of(cell, old, value));
      if (call.evaluator.union(List.of(made)).equals(output.sources())) continue;
      relation.setComputed();
      call.put(relation, column, made);
    }
    return MValue.table(relation);
  }

  private static MValue ofRow(MCall call, MValue value, Relation from) {
    return value.is(MValue.Kind.FUNCTION) ? call.apply(value, MValue.row(from)) : value;
  }

  /** Replacer.ReplaceValue(value, old, new): the old value is only compared. */
  static MValue replacer(MCall call) {
    boolean whole =
        call.name.endsWith("Value") && call.argument(0).isConstant() && call.argument(1).isConstant();
    if (whole) return call.argument(MOperators.same(call.argument(0), call.argument(1)) ? 2 : 0);
    return call.evaluator.mixed(List.of(call.argument(0), call.argument(2)));
  }

  /** Table.SplitColumn(table, column, splitter, names or how many). */
  static MValue split(MCall call) {
    Relation from = call.table(0);
    String column = call.text(1);
    if (from == null) return MValue.UNKNOWN;
    if (column == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.computedFrom(from);
    List<String> names = parts(call, column);
    MValue part = call.cells(from, List.of(column));
    if (names != null) {
      relation.replace(column, names.stream().map(name -> call.output(name, part)).toList());
      return MValue.table(relation);
    }
    relation.leaveOut(column);
    relation.setDoubtful(call.budget());
    return MValue.table(relation.blame(call.fault(COMPUTED)));
  }

  private static List<String> parts(MCall call, String column) {
    MValue value = call.argument(3);
    if (!value.is(MValue.Kind.NUMBER)) return call.texts(3);
    if (!value.text.matches("[0-9]{1,4}") || Integer.parseInt(value.text) > MOST_PARTS) return null;
    List<String> names = new ArrayList<>();
    for (int i = 1; i <= Integer.parseInt(value.text); ++i) names.add(column + "." + i);
    return names;
  }

  /** Table.CombineColumns(table, columns, combiner, name). */
  static MValue combine(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> columns = call.texts(1);
    if (columns == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.computedFrom(from);
    for (String column : columns) relation.leaveOut(column);
    relation.setUnordered();
    if (call.text(3) != null) {
      call.put(relation, call.text(3), call.cells(from, columns));
    } else {
      relation.setDoubtful(call.budget());
      relation.blame(call.fault(COMPUTED));
    }
    return MValue.table(relation);
  }
}

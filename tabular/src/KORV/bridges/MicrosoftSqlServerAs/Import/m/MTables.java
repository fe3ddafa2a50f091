package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.List;
import java.util.Set;
import java.util.function.Function;

/** Functions that group, turn, join, append and expand tables. */
final class MTables {
  private static final String COMPUTED = "computes names of columns";

  private MTables() {}

  /** The keys, and what each function makes of the rows of a group. */
  static MValue group(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> keys = call.texts(1);
    if (keys == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.chosen(from, keys, call.budget());
    relation.setComputed();
    List<List<MValue>> made = call.tuples(2);
    if (made == null) return MValue.table(relation.blame(call.fault(COMPUTED)));
    for (List<MValue> one : made)
      call.put(relation, one.get(0).text, call.apply(one.get(1), MValue.table(from)));
    return MValue.table(relation);
  }

  /** Table.View(table, [GetRows = () => ..., ...]): the rows are whatever the handlers make of them. */
  static MValue view(MCall call) {
    List<MValue> read = new ArrayList<>(call.arguments);
    for (MValue handler : call.argument(1).fields.values())
      if (handler.is(MValue.Kind.FUNCTION)) read.add(call.apply(handler));
    return call.evaluator.unknownTable(read, call.fault("has handlers of its own"));
  }

  /** Table.Pivot(table, values, attribute, value): the values become columns. */
  static MValue pivot(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    if (call.text(2) == null || call.text(3) == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.computedFrom(from);
    relation.leaveOut(call.text(2));
    relation.leaveOut(call.text(3));
    List<String> names = call.texts(1);
    MValue value = call.cells(from, List.of(call.text(3)));
    for (String name : names == null ? List.<String>of() : names) call.put(relation, name, value);
    if (names == null) {
      relation.setDoubtful(call.budget());
      relation.blame(call.fault("makes columns of names that stand in the data"));
    }
    return MValue.table(relation);
  }

  /** Table.Unpivot(table, columns, attribute, value): the attribute holds names of columns, no data. */
  static MValue unpivot(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> columns = call.texts(1);
    Relation relation = Relation.over(from);
    if (columns == null) {
      relation.setDoubtful(call.budget());
      relation.blame(call.fault(COMPUTED));
    } else {
      for (String column : columns) relation.leaveOut(column);
    }
    return unpivoted(call, relation, columns);
  }

  /** All columns but those that are listed, which can be told only where all are known. */
  static MValue unpivotOthers(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> kept = call.texts(1);
    if (kept == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.chosen(from, kept, call.budget());
    List<String> names = from.names(call.budget());
    if (names == null) relation.blame(call.fault("takes columns that the query does not name"));
    List<String> others = names == null ? null : new ArrayList<>(names);
    if (others != null) others.removeAll(Set.copyOf(kept));
    return unpivoted(call, relation, others);
  }

  private static MValue unpivoted(MCall call, Relation relation, List<String> columns) {
    relation.setComputed();
    if (call.text(2) == null || call.text(3) == null) return call.unknownColumns(COMPUTED);
    relation.put(call.text(2), Set.of());
    if (columns == null)
      relation.put(call.text(3), Relation.unknown(call.text(3)));
    else
      call.put(relation, call.text(3), call.cells(call.table(0), columns));
    return MValue.table(relation);
  }

  /** Rows of the second table as a column of the first; the keys only decide which. */
  static MValue nestedJoin(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    Relation relation = Relation.over(call.table(0));
    MValue second = call.argument(2);
    if (second.is(MValue.Kind.FUNCTION)) second = call.apply(second);
    relation.readAlso(call.evaluator.origin(List.of(second)));
    limitByKeys(call, relation, second.is(MValue.Kind.TABLE) ? second.relation : null);
    if (call.text(4) != null) {
      call.put(relation, call.text(4), second);
    } else {
      relation.setDoubtful(call.budget());
      relation.blame(call.fault(COMPUTED));
    }
    return MValue.table(relation);
  }

  /** The keys of both tables, whatever the kind of join. */
  private static void limitByKeys(MCall call, Relation relation, Relation second) {
    List<MValue> keys = new ArrayList<>();
    List<String> first = call.texts(1);
    List<String> others = call.texts(3);
    if (first != null) keys.add(call.cells(call.table(0), first));
    if (others != null && second != null) keys.add(call.cells(second, others));
    call.limit(relation, call.written(1) + " = " + call.written(3), keys);
  }

  static MValue join(MCall call) {
    if (call.table(0) == null && call.table(2) == null) return MValue.UNKNOWN;
    if (call.table(0) == null || call.table(2) == null) return call.unknownColumns("joins an unknown table");
    Relation relation = Relation.joined(call.table(0), call.table(2), call.budget());
    limitByKeys(call, relation, call.table(2));
    return MValue.table(relation);
  }

  /** Table.Combine(tables, columns). */
  static MValue append(MCall call) {
    MValue tables = call.argument(0);
    // The folders of all cubes of a model in one: items are picked from it as from the model.
    if (tables.is(MValue.Kind.SOURCE) && !tables.source.isFile()) return tables;
    List<Relation> parts = new ArrayList<>();
    for (MValue table : tables.items)
      if (table.is(MValue.Kind.TABLE)) parts.add(table.relation);
    if (parts.isEmpty()) return MValue.UNKNOWN;
    Relation relation = Relation.append(parts);
    if (parts.size() < tables.items.size()) {
      relation = Relation.over(relation);
      relation.setComputed();
      relation.blame(call.fault("appends a table that is not known"));
    }
    List<String> columns = call.texts(1);
    return MValue.table(columns == null ? relation : Relation.chosen(relation, columns, call.budget()));
  }

  /** The rows of a table, and those that argument `place` lists as records. */
  static MValue withRows(MCall call, int place) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    MValue rows = MMaking.fromRecords(call.withFirst(call.argument(place)));
    Relation relation = Relation.computedFrom(call.table(0));
    if (rows == null) return MValue.table(relation.blame(call.fault("takes rows that are not known")));
    return MValue.table(Relation.append(List.of(relation, rows.relation)));
  }

  /** Functions that cut a table into a list of tables. */
  static MValue pages(MCall call) {
    return call.table(0) == null ? MValue.UNKNOWN : MValue.repeated(MValue.table(call.table(0)));
  }

  /** Table.FromPartitions(column, {{value, table}, ...}). */
  static MValue fromPartitions(MCall call) {
    List<MValue> tables = new ArrayList<>();
    List<Relation> parts = new ArrayList<>();
    for (MValue partition : call.argument(1).items) {
      List<MValue> pair = partition.items;
      if (pair.size() != 2) continue;
      tables.add(pair.get(1));
      if (!pair.get(1).is(MValue.Kind.TABLE) || call.text(0) == null) continue;
      Relation part = Relation.computedFrom(pair.get(1).relation);
      call.put(part, call.text(0), pair.get(0));
      parts.add(part);
    }
    boolean whole = call.argument(1).isWholeList() && parts.size() == call.argument(1).items.size();
    if (whole && !parts.isEmpty()) return MValue.table(Relation.append(parts));
    return call.evaluator.unknownTable(tables, call.fault("puts together tables that are not known"));
  }

  /** Table.Transpose(table, names): every column is made of one row, and so of all columns. */
  static MValue transpose(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    List<String> names = from.names(call.budget());
    List<String> made = call.has(1) ? MMaking.names(call.argument(1)) : null;
    if (names == null || made == null) return call.unknownColumns("turns rows into columns");
    Relation relation = Relation.rowsOf(from);
    relation.setComputed();
    MValue cells = call.cells(from, names);
    for (String name : made) call.put(relation, name, cells);
    return MValue.table(relation);
  }

  static MValue expandTable(MCall call) {
    return expand(call, content -> content.is(MValue.Kind.TABLE) ? MValue.row(content.relation) : content);
  }

  static MValue expandRecord(MCall call) { return expand(call, content -> content); }

  /** What stands in the cells becomes columns; a column that was there untouched holds what is not known. */
  private static MValue expand(MCall call, Function<MValue, MValue> rowOf) {
    Relation from = call.table(0);
    String column = call.text(1);
    if (from == null) return MValue.UNKNOWN;
    if (column == null) return call.unknownColumns(COMPUTED);
    Relation relation = Relation.computedFrom(from);
    Relation.Output output = call.find(from, column);
    MValue content = MCall.content(output);
    if (content == null) content = isOfFile(call, output) ? MCall.cell(output) : MValue.UNKNOWN;
    if (content.relation != null && content.relation.fault() != null)
      relation.blame(content.relation.fault());
    List<String> columns = call.texts(2);
    List<String> names = call.has(3) ? call.texts(3) : columns;
    if (columns == null || names == null || names.size() != columns.size()) {
      relation.leaveOut(column);
      relation.setDoubtful(call.budget());
      return MValue.table(relation.blame(call.fault(COMPUTED)));
    }
    MValue row = rowOf.apply(content);
    List<Relation.Output> made = new ArrayList<>();
    for (int i = 0; i < columns.size(); ++i)
      made.add(expanded(call, names.get(i), MNavigation.field(call.evaluator, row, columns.get(i))));
    relation.replace(column, made);
    relation.readAlso(call.evaluator.origin(List.of(content)));
    return MValue.table(relation);
  }

  /** What is nested in a file is a part of its column; a column of a database may stand for another table. */
  private static boolean isOfFile(MCall call, Relation.Output output) {
    if (output == null || !output.isKnown()) return false;
    MContext context = call.evaluator.context();
    return output.sources().stream().allMatch(column -> context.isFile(column.table().connection()));
  }

  private static Relation.Output expanded(MCall call, String name, MValue cells) {
    return cells == MValue.UNKNOWN ? Relation.unknown(name) : call.output(name, cells);
  }

  /** Each item of a list in a row of its own. */
  static MValue expandList(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    Relation relation = Relation.computedFrom(from);
    Relation.Output output = call.text(1) == null ? null : call.find(from, call.text(1));
    MValue content = MCall.content(output);
    if (content != null && content.is(MValue.Kind.LIST) && !content.items.isEmpty())
      call.put(relation, call.text(1), call.evaluator.either(content.items, List.of()));
    return MValue.table(relation);
  }
}

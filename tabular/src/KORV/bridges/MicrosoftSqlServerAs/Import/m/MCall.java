package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.Collection;
import java.util.List;

/** A call of a function of the language: its arguments, and what the evaluation does for it. */
final class MCall {
  final MEvaluation evaluator;
  final String name;
  final List<MValue> arguments;
  private final MNode written;

  MCall(MEvaluation evaluator, String name, List<MValue> arguments, MNode written) {
    this.evaluator = evaluator;
    this.name = name;
    this.arguments = arguments;
    this.written = written;
  }

  Budget budget() { return evaluator.budget(); }

  MValue argument(int place) { return place < arguments.size() ? arguments.get(place) : MValue.UNKNOWN; }

  /** The place of the call in the text. */
  int place() { return written.at(); }

  MCall withFirst(MValue value) {
    List<MValue> others = new ArrayList<>(arguments);
    others.set(0, value);
    return with(others);
  }

  MCall with(List<MValue> others) { return new MCall(evaluator, name, others, written); }

  /** Whether an argument is null. */
  boolean isNothing(int place) { return argument(place) == MValue.NULL; }

  boolean has(int place) { return place < arguments.size() && !isNothing(place); }

  /** An argument as the text has it; empty when a function made the call. */
  String written(int place) {
    boolean there = place < written.items().size() && written.items().size() == arguments.size();
    return there ? evaluator.written(written.items().get(place)) : "";
  }

  /** The rows of an argument that is a table, or null. */
  Relation table(int place) {
    MValue value = argument(place);
    if (value.is(MValue.Kind.SOURCE)) return MPaths.rows(evaluator, value.source);
    return value.is(MValue.Kind.TABLE) ? value.relation : null;
  }

  String text(int place) { return argument(place).constantText(); }

  /** One text or a list of texts; null when not all are constant. */
  List<String> texts(int place) { return texts(argument(place)); }

  static List<String> texts(MValue value) {
    if (value.is(MValue.Kind.TEXT)) return List.of(value.text);
    if (!value.isWholeList()) return null;
    List<String> texts = new ArrayList<>(value.items.size());
    for (MValue item : value.items) {
      if (!item.is(MValue.Kind.TEXT)) return null;
      texts.add(item.text);
    }
    return texts;
  }

  /** {{"a", x}, {"b", y}}, or {"a", x} alone, as a list of lists; null when it is not all there. */
  List<List<MValue>> tuples(int place) {
    MValue value = argument(place);
    if (!value.isWholeList()) return null;
    boolean single = !value.items.isEmpty() && value.items.get(0).is(MValue.Kind.TEXT);
    List<List<MValue>> tuples = new ArrayList<>();
    for (MValue item : single ? List.of(value) : value.items) {
      if (!item.isWholeList() || item.items.size() < 2 || !item.items.get(0).is(MValue.Kind.TEXT))
        return null;
      tuples.add(item.items);
    }
    return tuples;
  }

  MValue apply(MValue function, MValue... values) {
    if (!function.is(MValue.Kind.FUNCTION)) return MValue.UNKNOWN;
    return function.function.apply(List.of(values), written);
  }

  Relation.Output find(Relation relation, String column) { return relation.find(column, budget()); }

  /** What the cells of some columns are made of, as far as it is known. */
  MValue cells(Relation relation, Collection<String> columns) {
    List<MValue> cells = new ArrayList<>();
    for (String column : columns) cells.add(cell(find(relation, column)));
    return evaluator.mixed(cells);
  }

  /** Puts a column of such cells; what they are taken from is read too. */
  void put(Relation relation, String column, MValue cells) {
    relation.put(column, output(column, cells));
    relation.readAlso(evaluator.origin(List.of(cells)));
  }

  Relation.Output output(String column, MValue cells) {
    return new Relation.Output(column, evaluator.union(List.of(cells)), cells);
  }

  /** Puts a column that stands for another one. */
  void put(Relation relation, String column, Relation.Output other) {
    relation.put(column, other == null ? Relation.unknown(column) : other);
  }

  /** Limits the rows by what some values say; what those are taken from is read too. */
  void limit(Relation relation, String text, List<MValue> values) {
    relation.readAlso(evaluator.origin(values));
    relation.limit(new Origin.Condition(text, evaluator.union(values)));
  }

  /** What stands in the cells of a column. */
  static MValue cell(Relation.Output output) {
    if (output == null || !output.isKnown()) return MValue.UNKNOWN;
    MValue content = content(output);
    return content != null ? content : MValue.of(output.sources(), Origin.NONE);
  }

  /** The tables, lists and records that stand in the cells of a column, or null. */
  static MValue content(Relation.Output output) { return output == null ? null : (MValue) output.content(); }

  MFault fault(String cause) { return evaluator.fault("step '" + name + "' " + cause, written.at()); }

  /** The same rows, with columns that the text does not tell. */
  MValue unknownColumns(String cause) { return evaluator.unknownTable(arguments, fault(cause)); }
}

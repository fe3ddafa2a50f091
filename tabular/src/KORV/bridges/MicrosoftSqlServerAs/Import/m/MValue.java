package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** What a part of a query comes to, as far as its text tells. */
final class MValue implements Relation.Content {
  enum Kind { UNKNOWN, TEXT, NUMBER, LOGICAL, LIST, RECORD, TABLE, FUNCTION, SOURCE, TYPE }

  /** What a function makes of its arguments; `call` are those as they are written. */
  interface Function {
    MValue apply(List<MValue> arguments, MNode call);
  }

  static final MValue UNKNOWN = new MValue(Kind.UNKNOWN);
  static final MValue NULL = new MValue(Kind.UNKNOWN);

  final Kind kind;
  /** A constant as it is written. */
  String text;
  /** The physical columns that the value is made of, besides those of its items and fields. */
  Set<Origin.Column> sources = Set.of();
  /** The tables that the value is taken from. */
  Origin origin = Origin.NONE;
  List<MValue> items = List.of();
  /** Whether a list has its one item any number of times. */
  boolean repeated;
  /** Fields of a record by name. */
  Map<String, MValue> fields = Map.of();
  /** The rows of a table, or the table that a record is a row of. */
  Relation relation;
  /** Whether a table is still the row of a list of tables, so that [Data] is the table itself. */
  boolean listed;
  Function function;
  MSource source;
  /** The columns of a table type. */
  List<String> names = List.of();

  private MValue(Kind kind) { this.kind = kind; }

  private static MValue constant(Kind kind, String text) {
    MValue value = new MValue(kind);
    value.text = text;
    return value;
  }

  static MValue text(String text) { return constant(Kind.TEXT, text); }

  static MValue number(String text) { return constant(Kind.NUMBER, text); }

  static MValue logical(boolean value) { return constant(Kind.LOGICAL, Boolean.toString(value)); }

  /** A value of which only is known what it is made of. */
  static MValue of(Set<Origin.Column> sources, Origin origin) {
    if (sources.isEmpty() && origin == Origin.NONE) return UNKNOWN;
    MValue value = new MValue(Kind.UNKNOWN);
    value.sources = sources;
    value.origin = origin;
    return value;
  }

  /** The same value, also taken from these tables. */
  MValue from(Origin other) {
    if (other == Origin.NONE || other == origin) return this;
    MValue value = copy();
    value.origin = origin.with(other);
    return value;
  }

  private MValue copy() {
    MValue value = new MValue(kind);
    value.text = text;
    value.sources = sources;
    value.origin = origin;
    value.items = items;
    value.repeated = repeated;
    value.fields = fields;
    value.relation = relation;
    value.listed = listed;
    value.function = function;
    value.source = source;
    value.names = names;
    return value;
  }

  @Override
  public Relation.Content appended(Relation.Content other) {
    boolean tables = is(Kind.TABLE) && other instanceof MValue value && value.is(Kind.TABLE);
    return tables ? table(Relation.append(List.of(relation, ((MValue) other).relation))) : null;
  }

  static MValue list(List<MValue> items) {
    MValue value = new MValue(Kind.LIST);
    value.items = items;
    return value;
  }

  static MValue repeated(MValue item) {
    MValue value = list(List.of(item));
    value.repeated = true;
    return value;
  }

  static MValue record(Map<String, MValue> fields) {
    MValue value = new MValue(Kind.RECORD);
    value.fields = fields;
    return value;
  }

  static MValue row(Relation relation) {
    MValue value = record(new LinkedHashMap<>());
    value.relation = relation;
    return value;
  }

  static MValue table(Relation relation) {
    MValue value = new MValue(Kind.TABLE);
    value.relation = relation;
    return value;
  }

  /** A table that is still a row of the list that it was picked from. */
  static MValue listed(Relation relation) {
    MValue value = table(relation);
    value.listed = true;
    return value;
  }

  static MValue function(Function function) {
    MValue value = new MValue(Kind.FUNCTION);
    value.function = function;
    return value;
  }

  static MValue source(MSource source) {
    MValue value = new MValue(Kind.SOURCE);
    value.source = source;
    return value;
  }

  static MValue type(List<String> names) {
    MValue value = new MValue(Kind.TYPE);
    value.names = names;
    return value;
  }

  boolean is(Kind expected) { return kind == expected; }

  /** The text of a constant, or null. */
  String constantText() { return kind == Kind.TEXT ? text : null; }

  /** The text of a field that is constant, or null. */
  String fieldText(String name) {
    MValue value = fields.get(name);
    return value == null ? null : value.constantText();
  }

  boolean isConstant() { return text != null; }

  /** Whether all items are there, each by itself. */
  boolean isWholeList() { return kind == Kind.LIST && !repeated; }
}

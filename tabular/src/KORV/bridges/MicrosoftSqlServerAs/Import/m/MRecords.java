package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.Function;

/** Functions of records. A record is changed as a table of that one row would be. */
final class MRecords {
  private MRecords() {}

  static MValue field(MCall call) {
    MValue field = call.argument(0);
    if (call.text(1) == null) return field.relation == null ? null : MValue.UNKNOWN;
    boolean there = field.fields.containsKey(call.text(1));
    field = MNavigation.field(call.evaluator, field, call.text(1));
    boolean either = !there && call.name.equals("Record.FieldOrDefault") && call.has(2);
    return either ? call.evaluator.either(List.of(field, call.argument(2)), List.of()) : field;
  }

  /** Record.AddField(record, name, value, delayed): a value that is delayed is a function's. */
  static MValue add(MCall call) {
    MValue record = call.argument(0);
    if (!record.is(MValue.Kind.RECORD) || call.text(1) == null) return null;
    // A record that grows field by field would cost its length for each.
    if (!call.budget().take(record.fields.size())) return MValue.UNKNOWN;
    MValue value = call.argument(2);
    if (call.has(3) && value.is(MValue.Kind.FUNCTION)) value = call.apply(value);
    Map<String, MValue> fields = new LinkedHashMap<>(record.fields);
    fields.put(call.text(1), value);
    MValue longer = MValue.record(fields).from(record.origin);
    longer.relation = record.relation;
    return longer;
  }

  /** What `change` does to columns, done to the fields of the first argument. */
  static MValue changed(MCall call, Function<MCall, MValue> change) {
    MValue record = call.argument(0);
    if (!record.is(MValue.Kind.RECORD)) return null;
    MValue table = change.apply(call.withFirst(MValue.table(rowOf(call, record))));
    if (!table.is(MValue.Kind.TABLE)) return null;
    if (record.relation != null) return MValue.row(table.relation).from(record.origin);
    List<String> names = table.relation.names(call.budget());
    if (names == null) return MValue.row(table.relation).from(record.origin);
    Map<String, MValue> fields = new LinkedHashMap<>();
    for (String name : names) fields.put(name, MCall.cell(call.find(table.relation, name)));
    return MValue.record(fields).from(record.origin);
  }

  private static Relation rowOf(MCall call, MValue record) {
    Relation row = record.relation == null ? Relation.made() : Relation.over(record.relation);
    for (Map.Entry<String, MValue> field : record.fields.entrySet()) {
      if (call.budget().take(1)) call.put(row, field.getKey(), field.getValue());
    }
    return row;
  }

  /** Record.Combine(records): of equal names the last one counts. */
  static MValue combine(MCall call) {
    MValue records = call.argument(0);
    if (!records.isWholeList() || records.items.isEmpty()) return null;
    return MOperators.join(call.evaluator, records.items, call.place());
  }

  static MValue fromList(MCall call) {
    List<String> names = call.texts(1);
    MValue list = call.argument(0);
    if (names == null || !list.is(MValue.Kind.LIST)) return null;
    Map<String, MValue> fields = new LinkedHashMap<>();
    for (int i = 0; i < names.size(); ++i) {
      if (!list.repeated && i >= list.items.size()) return null;
      fields.put(names.get(i), list.items.get(list.repeated ? 0 : i));
    }
    return MValue.record(fields).from(list.origin);
  }

  /** A table of the columns Name and Value: the names stand in the data, and every field is a value. */
  static MValue fromTable(MCall call) {
    if (call.table(0) == null) return null;
    return call.cells(call.table(0), List.of("Value")).from(call.table(0).origin());
  }

  static MValue toTable(MCall call) {
    MValue values = toList(call);
    if (values == null || !values.is(MValue.Kind.LIST)) return null;
    Relation relation = Relation.made();
    relation.put("Name", Set.of());
    call.put(relation, "Value", call.evaluator.mixed(values.items));
    return MValue.table(relation);
  }

  /** The names of all fields, or null. */
  private static List<String> names(MCall call) {
    MValue record = call.argument(0);
    return record.is(MValue.Kind.RECORD) ? rowOf(call, record).names(call.budget()) : null;
  }

  static MValue toList(MCall call) {
    List<String> names = names(call);
    if (names == null) return call.argument(0).is(MValue.Kind.RECORD) ? MValue.UNKNOWN : null;
    return MValue
        .list(names.stream().map(name -> MNavigation.field(call.evaluator, call.argument(0), name)).toList())
        .from(call.argument(0).origin);
  }

  static MValue fieldNames(MCall call) {
    List<String> names = names(call);
    return names == null ? MValue.UNKNOWN : MValue.list(names.stream().map(MValue::text).toList());
  }

  static MValue hasFields(MCall call) {
    List<String> names = names(call);
    List<String> asked = call.texts(1);
    if (names == null || asked == null) return MValue.UNKNOWN;
    return MValue.logical(Set.copyOf(names).containsAll(asked));
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Functions that take values out of tables, lists, records and texts, or put them in. */
final class MScalars {
  private MScalars() {}

  static MValue row(MCall call) {
    return call.table(0) == null ? MValue.UNKNOWN : MValue.row(call.table(0)).from(call.table(0).origin());
  }

  static MValue column(MCall call) {
    if (call.table(0) == null || call.text(1) == null) return MValue.UNKNOWN;
    return MNavigation.field(call.evaluator, call.argument(0), call.text(1));
  }

  static MValue columnNames(MCall call) {
    List<String> names = call.table(0) == null ? null : call.table(0).names(call.evaluator.budget());
    if (names == null) return MValue.UNKNOWN;
    return MValue.list(names.stream().map(MValue::text).toList());
  }

  static MValue records(MCall call) {
    return call.table(0) == null ? MValue.UNKNOWN : MValue.repeated(MValue.row(call.table(0)));
  }

  static MValue transformRows(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    MValue made = call.apply(call.argument(1), MValue.row(call.table(0)));
    return MValue.repeated(made.from(call.table(0).origin()));
  }

  /** A list of which some items may be missing. */
  static MValue someItems(MCall call) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST) || list.items.isEmpty()) return null;
    boolean whole = call.name.equals("List.Buffer") || list.repeated;
    return whole ? list : MValue.repeated(call.evaluator.either(list.items, List.of()));
  }

  static MValue end(MCall call, boolean first) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST) || list.items.isEmpty()) return null;
    return list.items.get(first ? 0 : list.items.size() - 1);
  }

  static MValue transformList(MCall call) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST)) {
      MValue item = call.evaluator.mixed(List.of(list));
      return MValue.repeated(call.apply(call.argument(1), item));
    }
    List<MValue> items = new ArrayList<>(list.items.size());
    for (MValue item : list.items) items.add(call.apply(call.argument(1), item));
    MValue made = MValue.list(items);
    made.repeated = list.repeated;
    return made;
  }

  /** List.Accumulate(list, seed, function): step by step where the list is constant. */
  static MValue accumulate(MCall call) {
    MValue list = call.argument(0);
    MValue state = call.argument(1);
    if (!list.isWholeList()) {
      return state.is(MValue.Kind.TABLE) ? call.unknownColumns("goes through a list that is not known")
                                         : null;
    }
    for (MValue item : list.items) state = call.apply(call.argument(2), state, item);
    return state;
  }

  static MValue combineLists(MCall call) {
    if (!call.argument(0).isWholeList()) return null;
    List<MValue> items = new ArrayList<>();
    for (MValue list : call.argument(0).items) {
      if (!list.isWholeList() || !call.evaluator.budget().take(list.items.size())) return null;
      items.addAll(list.items);
    }
    return MValue.list(items);
  }

  static MValue recordField(MCall call) {
    MValue field = call.argument(0);
    if (call.text(1) == null) return field.relation == null ? null : MValue.UNKNOWN;
    field = MNavigation.field(call.evaluator, field, call.text(1));
    return call.has(2) ? call.evaluator.either(List.of(field, call.argument(2)), List.of()) : field;
  }

  static MValue addField(MCall call) {
    MValue record = call.argument(0);
    if (!record.is(MValue.Kind.RECORD) || call.text(1) == null) return null;
    Map<String, MValue> fields = new LinkedHashMap<>(record.fields);
    fields.put(call.text(1), call.argument(2));
    MValue longer = MValue.record(fields);
    longer.relation = record.relation;
    return longer;
  }

  /** Function.Invoke(function, arguments). */
  static MValue invoke(MCall call) {
    if (!call.argument(1).isWholeList()) return MValue.UNKNOWN;
    return call.apply(call.argument(0), call.argument(1).items.toArray(new MValue[0]));
  }

  /** Only whole numbers: how others are written depends on the culture. */
  static MValue textFrom(MCall call) {
    MValue value = call.argument(0);
    if (value.is(MValue.Kind.TEXT)) return value;
    boolean whole = value.is(MValue.Kind.NUMBER) && value.text.matches("[1-9][0-9]*|0");
    return whole && call.arguments.size() == 1 ? MValue.text(value.text) : null;
  }

  static MValue combineTexts(MCall call) {
    List<String> texts = call.argument(0).isWholeList() ? call.texts(0) : null;
    if (texts == null || call.has(1) && call.text(1) == null) return null;
    return MValue.text(String.join(call.has(1) ? call.text(1) : "", texts));
  }

  static MValue replaceText(MCall call) {
    if (call.text(0) == null || call.text(1) == null || call.text(2) == null || call.text(1).isEmpty())
      return null;
    return MValue.text(call.text(0).replace(call.text(1), call.text(2)));
  }
}

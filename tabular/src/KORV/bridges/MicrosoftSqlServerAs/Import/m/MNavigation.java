package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** What is picked from a value: {item}, [field], [[columns]]. */
final class MNavigation {
  /** The columns of a list of items that hold what the items are. */
  private static final Set<String> CONTENTS = Set.of("Data", "Content", "Items", "Table");

  private MNavigation() {}

  static MValue item(MEvaluation evaluator, MValue value, MValue key, int at) {
    return switch (value.kind) {
      case SOURCE -> MSources.item(evaluator, value, key, at);
      case LIST -> itemOfList(evaluator, value, key);
      case TABLE -> MValue.row(value.relation).from(value.relation.origin());
      case UNKNOWN -> value;
      default -> MValue.UNKNOWN;
    };
  }

  private static MValue itemOfList(MEvaluation evaluator, MValue list, MValue key) {
    if (list.repeated) return list.items.get(0);
    if (key.is(MValue.Kind.NUMBER) && key.text.matches("[0-9]{1,8}")) {
      int place = Integer.parseInt(key.text);
      return place < list.items.size() ? list.items.get(place) : MValue.UNKNOWN;
    }
    return list.items.isEmpty() ? MValue.UNKNOWN : evaluator.either(list.items, List.of());
  }

  /** [Data] behind an item of a source is the item's content; a table's field is the list of a column. */
  static MValue field(MEvaluation evaluator, MValue value, String name) {
    switch (value.kind) {
      case RECORD:
        if (value.fields.containsKey(name)) return value.fields.get(name);
        return value.relation == null ? MValue.UNKNOWN
                                      : cell(evaluator, value.relation, name).from(value.origin);
      case TABLE:
        if (value.listed) return CONTENTS.contains(name) ? MValue.table(value.relation) : MValue.UNKNOWN;
        return MValue.repeated(cell(evaluator, value.relation, name)).from(value.relation.origin());
      case SOURCE:
        return CONTENTS.contains(name) ? value : MValue.UNKNOWN;
      case UNKNOWN:
        return value;
      default:
        return MValue.UNKNOWN;
    }
  }

  private static MValue cell(MEvaluation evaluator, Relation relation, String name) {
    return MCall.cell(relation.find(name, evaluator.budget()));
  }

  static MValue columns(MEvaluation evaluator, MValue value, List<String> names) {
    if (value.is(MValue.Kind.TABLE))
      return MValue.table(Relation.chosen(value.relation, names, evaluator.budget()));
    if (!value.is(MValue.Kind.RECORD)) return value.is(MValue.Kind.UNKNOWN) ? value : MValue.UNKNOWN;
    Map<String, MValue> fields = new LinkedHashMap<>(value.fields);
    fields.keySet().retainAll(names);
    MValue record = MValue.record(fields);
    record.relation =
        value.relation == null ? null : Relation.chosen(value.relation, names, evaluator.budget());
    return record;
  }
}

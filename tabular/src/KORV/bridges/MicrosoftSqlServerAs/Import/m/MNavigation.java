package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** What is picked from a value: {item}, [field], [[columns]]. */
final class MNavigation {
  private static final String CONTENT = "Data";

  private MNavigation() {}

  static MValue item(MEvaluator evaluator, MValue value, MValue key, int at) {
    return switch (value.kind) {
      case SOURCE -> itemOfSource(evaluator, value, key, at);
      case LIST -> itemOfList(evaluator, value, key);
      case TABLE -> MValue.row(value.relation);
      case UNKNOWN -> value;
      default -> MValue.UNKNOWN;
    };
  }

  private static MValue itemOfList(MEvaluator evaluator, MValue list, MValue key) {
    if (list.repeated) return list.items.get(0);
    if (key.is(MValue.Kind.NUMBER) && key.text.matches("[0-9]{1,8}")) {
      int place = Integer.parseInt(key.text);
      return place < list.items.size() ? list.items.get(place) : MValue.UNKNOWN;
    }
    return list.items.isEmpty() ? MValue.UNKNOWN : evaluator.either(list.items, List.of());
  }

  /** Source{[Schema="dbo",Item="Sales"]}, Source{[Name="Sales"]} and the like. */
  private static MValue itemOfSource(MEvaluator evaluator, MValue source, MValue key, int at) {
    String item = text(key, "Item");
    String name = item != null ? item : text(key, "Name");
    if (name == null) {
      if (source.connection == null) return MValue.UNKNOWN;
      MFault fault = evaluator.fault("the name of the item is computed", at);
      MValue unknown = evaluator.unknownTable(List.of(source), fault);
      unknown.listed = true;
      return unknown;
    }
    if (source.server != null)
      return MValue.source(evaluator.context().connection(source.opener, source.server, name), "");
    String schema = text(key, "Schema");
    String kind = text(key, "Kind");
    if ("Schema".equals(kind)) return MValue.source(source.connection, name);
    if ("Database".equals(kind)) return MValue.source(source.connection, source.schema);
    Relation.Table table =
        Relation.Table.named(source.connection, schema != null ? schema : source.schema, name);
    MValue value = MValue.table(Relation.ofTable(table));
    value.listed = true;
    return value;
  }

  static String text(MValue record, String field) {
    MValue value = record.fields.get(field);
    return value == null ? null : value.constantText();
  }

  /** [Data] behind an item of a source is the item's content; a table's field is the list of a column. */
  static MValue field(MEvaluator evaluator, MValue value, String name) {
    switch (value.kind) {
      case RECORD:
        if (value.fields.containsKey(name)) return value.fields.get(name);
        return value.relation == null ? MValue.UNKNOWN : cell(evaluator, value.relation, name);
      case TABLE:
        if (value.listed) return name.equals(CONTENT) ? MValue.table(value.relation) : MValue.UNKNOWN;
        return MValue.repeated(cell(evaluator, value.relation, name));
      case SOURCE:
        return name.equals(CONTENT) ? value : MValue.UNKNOWN;
      case UNKNOWN:
        return value;
      default:
        return MValue.UNKNOWN;
    }
  }

  private static MValue cell(MEvaluator evaluator, Relation relation, String name) {
    return MCall.cell(relation.find(name, evaluator.budget()));
  }

  static MValue columns(MValue value, List<String> names) {
    if (value.is(MValue.Kind.TABLE)) return MValue.table(Relation.chosen(value.relation, names));
    if (!value.is(MValue.Kind.RECORD)) return value.is(MValue.Kind.UNKNOWN) ? value : MValue.UNKNOWN;
    Map<String, MValue> fields = new LinkedHashMap<>(value.fields);
    fields.keySet().retainAll(names);
    MValue record = MValue.record(fields);
    record.relation = value.relation == null ? null : Relation.chosen(value.relation, names);
    return record;
  }
}

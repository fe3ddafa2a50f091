package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** Functions that make a table of lists and records: its columns are only those that they name. */
final class MMaking {
  private static final Map<String, List<String>> ABOUT_COLUMNS = Map.of("Table.Schema",
      List.of("Name", "Position", "TypeName", "Kind", "IsNullable", "NumericPrecisionBase",
          "NumericPrecision", "NumericScale", "DateTimePrecision", "MaxLength", "IsVariableLength",
          "NativeTypeName", "NativeDefaultExpression", "NativeExpression", "Description", "IsWritable",
          "FieldCaption"),
      "Table.Profile",
      List.of("Column", "Min", "Max", "Average", "StandardDeviation", "Count", "NullCount", "DistinctCount"));

  private MMaking() {}

  /** #table(columns, rows). */
  static MValue table(MCall call) { return ofRows(call, call.argument(1), names(call.argument(0))); }

  static MValue fromRows(MCall call) { return ofRows(call, call.argument(0), names(call.argument(1))); }

  static List<String> names(MValue value) {
    return value.is(MValue.Kind.TYPE) ? value.names : MCall.texts(value);
  }

  private static MValue ofRows(MCall call, MValue rows, List<String> names) {
    if (names == null) return call.unknownColumns("has columns that are not known");
    List<List<MValue>> columns = new ArrayList<>();
    for (int i = 0; i < names.size(); ++i) columns.add(new ArrayList<>());
    boolean byPlace = rows.is(MValue.Kind.LIST) && rows.items.stream().allMatch(MValue::isWholeList);
    for (MValue row : byPlace ? rows.items : List.<MValue>of()) {
      for (int i = 0; i < names.size() && i < row.items.size(); ++i) columns.get(i).add(row.items.get(i));
    }
    for (List<MValue> column : columns)
      if (!byPlace) column.add(rows);
    return made(call, names, columns);
  }

  static MValue fromColumns(MCall call) {
    List<String> names = names(call.argument(1));
    MValue lists = call.argument(0);
    if (names == null || !lists.isWholeList() || lists.items.size() < names.size())
      return call.unknownColumns("has columns that are not known");
    List<List<MValue>> columns = new ArrayList<>();
    for (MValue list : lists.items) columns.add(List.of(list));
    return made(call, names, columns);
  }

  /** Table.FromList(list, splitter, columns): all columns are cut out of the items. */
  static MValue fromList(MCall call) {
    List<String> names = call.has(2) ? names(call.argument(2)) : List.of("Column1");
    // Without names a splitter that cuts gives as many columns as it finds parts.
    if (names == null) names = List.of("Column1");
    List<List<MValue>> columns = new ArrayList<>();
    for (int i = 0; i < names.size(); ++i) columns.add(List.of(call.argument(0)));
    return made(call, names, columns);
  }

  private static MValue made(MCall call, List<String> names, List<List<MValue>> columns) {
    Relation relation = Relation.made();
    relation.readAlso(call.evaluator.origin(call.arguments));
    for (int i = 0; i < names.size(); ++i) {
      List<MValue> cells = columns.get(i);
      MValue content = cells.isEmpty() ? MValue.UNKNOWN : content(call, cells);
      relation.put(names.get(i), new Relation.Output("", call.evaluator.union(cells), content));
    }
    return MValue.table(relation);
  }

  /** What one cell holds: a list of one kind of items has one in each row. */
  private static MValue content(MCall call, List<MValue> cells) {
    MValue only = cells.get(0);
    if (cells.size() == 1 && only.repeated) return only.items.get(0);
    return call.evaluator.mixed(cells);
  }

  /** Records of rows that were there before are these rows. */
  static MValue fromRecords(MCall call) {
    MValue list = call.argument(0);
    if (!list.is(MValue.Kind.LIST)) return null;
    Map<String, List<MValue>> columns = new LinkedHashMap<>();
    List<Relation> rows = new ArrayList<>();
    for (MValue item : list.items) {
      if (!item.is(MValue.Kind.RECORD)) return null;
      if (item.relation != null) rows.add(item.relation);
      for (Map.Entry<String, MValue> field : item.fields.entrySet())
        columns.computeIfAbsent(field.getKey(), name -> new ArrayList<>()).add(field.getValue());
    }
    if (rows.isEmpty()) {
      MValue table = made(call, new ArrayList<>(columns.keySet()), new ArrayList<>(columns.values()));
      table.relation.readAlso(call.evaluator.origin(List.of(list)));
      return table;
    }
    Relation relation = Relation.over(Relation.append(rows));
    for (Map.Entry<String, List<MValue>> column : columns.entrySet()) {
      relation.setComputed();
      relation.put(column.getKey(), call.evaluator.union(column.getValue()));
    }
    return MValue.table(relation);
  }

  /** Rows about the columns of a table, which hold none of its data. */
  static MValue aboutColumns(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    Relation relation = Relation.made();
    relation.readAlso(call.table(0));
    for (String name : ABOUT_COLUMNS.get(call.name)) relation.put(name, Set.of());
    return MValue.table(relation);
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.HashMap;
import java.util.List;
import java.util.Map;

/** The functions of the language that are known, each with what it does to columns. */
final class MFunctions {
  /** Null when the arguments are such that nothing can be told by the function's meaning. */
  interface Function {
    MValue apply(MCall call);
  }

  private static final Map<String, Function> FUNCTIONS = new HashMap<>();

  static {
    // The same columns; the argument behind the name lists columns that the table has, 0 for none.
    for (String name : List.of("Table.Buffer", "Table.RemoveRowsWithErrors", "Table.SelectRowsWithErrors",
             "Table.Range", "Table.StopFolding", "Table.ReverseRows", "Table.AlternateRows", "Table.Repeat",
             "Table.RemoveRows", "Table.FindText", "Table.ReplaceKeys", "Table.FilterWithDataTable",
             "Value.ReplaceType", "Value.ReplaceMetadata", "Value.RemoveMetadata"))
      FUNCTIONS.put(name, call -> MColumns.same(call, 0));
    for (String name : List.of("Table.TransformColumnTypes", "Table.Sort", "Table.Distinct", "Table.FillDown",
             "Table.FillUp", "Table.AddKey", "Table.ReplaceErrorValues"))
      FUNCTIONS.put(name, call -> MColumns.same(call, 1));

    // Rows that a condition chooses.
    for (String name : List.of("Table.SelectRows", "Table.FirstN", "Table.LastN", "Table.Skip",
             "Table.RemoveFirstN", "Table.RemoveLastN"))
      FUNCTIONS.put(name, call -> MRows.select(call, 1));
    for (String name : List.of("Table.MinN", "Table.MaxN"))
      FUNCTIONS.put(name, call -> MRows.select(call, 2));
    FUNCTIONS.put("Table.RemoveMatchingRows", MRows::removeMatching);

    FUNCTIONS.put("Table.SelectColumns", MColumns::select);
    FUNCTIONS.put("Table.ReorderColumns", MColumns::reorder);
    FUNCTIONS.put("Table.RemoveColumns", MColumns::remove);
    FUNCTIONS.put("Table.RenameColumns", MColumns::rename);
    FUNCTIONS.put("Table.PrefixColumns", MColumns::prefix);
    FUNCTIONS.put("Table.AddColumn", MColumns::add);
    FUNCTIONS.put("Table.AddIndexColumn", MColumns::addIndex);
    FUNCTIONS.put("Table.AddRankColumn", MColumns::addRank);
    FUNCTIONS.put("Table.AddFuzzyClusterColumn", MColumns::addCluster);
    FUNCTIONS.put("Table.CombineColumnsToRecord", MColumns::combineToRecord);
    FUNCTIONS.put("Table.DuplicateColumn", MColumns::duplicate);
    FUNCTIONS.put("Table.TransformColumns", MColumns::transform);
    FUNCTIONS.put("Table.ReplaceValue", MColumns::replace);
    FUNCTIONS.put("Table.SplitColumn", MColumns::split);
    FUNCTIONS.put("Table.CombineColumns", MColumns::combine);
    FUNCTIONS.put("Table.TransformColumnNames", MColumns::transformNames);
    FUNCTIONS.put("Table.PromoteHeaders", MFiles::promoteHeaders);
    FUNCTIONS.put("Table.DemoteHeaders", MColumns::demoteHeaders);
    FUNCTIONS.put("Table.View", MTables::view);
    FUNCTIONS.put("Replacer.ReplaceValue", MColumns::replacer);
    FUNCTIONS.put("Replacer.ReplaceText", MColumns::replacer);

    FUNCTIONS.put("Table.Group", MTables::group);
    FUNCTIONS.put("Table.FuzzyGroup", MTables::group);
    FUNCTIONS.put("Table.Pivot", MTables::pivot);
    FUNCTIONS.put("Table.Unpivot", MTables::unpivot);
    FUNCTIONS.put("Table.UnpivotOtherColumns", MTables::unpivotOthers);
    FUNCTIONS.put("Table.NestedJoin", MTables::nestedJoin);
    FUNCTIONS.put("Table.FuzzyNestedJoin", MTables::nestedJoin);
    FUNCTIONS.put("Table.AddJoinColumn", MTables::nestedJoin);
    FUNCTIONS.put("Table.Join", MTables::join);
    FUNCTIONS.put("Table.FuzzyJoin", MTables::join);
    FUNCTIONS.put("Table.Combine", MTables::append);
    FUNCTIONS.put("Table.InsertRows", call -> MTables.withRows(call, 2));
    FUNCTIONS.put("Table.ReplaceRows", call -> MTables.withRows(call, 3));
    FUNCTIONS.put("Table.Split", MTables::pages);
    FUNCTIONS.put("Table.SplitAt", MTables::pages);
    FUNCTIONS.put("Table.Partition", MTables::pages);
    FUNCTIONS.put("Table.FromPartitions", MTables::fromPartitions);
    FUNCTIONS.put("Table.Transpose", MTables::transpose);
    FUNCTIONS.put("Table.ExpandTableColumn", MTables::expandTable);
    FUNCTIONS.put("Table.ExpandRecordColumn", MTables::expandRecord);
    FUNCTIONS.put("Table.ExpandListColumn", MTables::expandList);

    FUNCTIONS.put("#table", MMaking::table);
    FUNCTIONS.put("Table.FromRows", MMaking::fromRows);
    FUNCTIONS.put("Table.FromRecords", call -> MMaking.fromRecords(MFiles.withRows(call)));
    FUNCTIONS.put("Table.FromColumns", MMaking::fromColumns);
    FUNCTIONS.put("Table.FromList", call -> MMaking.fromList(MFiles.withRows(call)));
    FUNCTIONS.put("Table.Schema", MMaking::aboutColumns);
    FUNCTIONS.put("Table.Profile", MMaking::aboutColumns);

    // Rows, columns and facts of a table.
    for (String name : List.of("Table.First", "Table.Last", "Table.Max", "Table.Min", "Table.SingleRow"))
      FUNCTIONS.put(name, MScalars::row);
    for (String name : List.of("Table.RowCount", "Table.ColumnCount", "Table.IsEmpty", "Table.IsDistinct",
             "Table.HasColumns", "Table.Contains", "Table.ContainsAll", "Table.ContainsAny",
             "Table.MatchesAllRows", "Table.MatchesAnyRows", "Table.PositionOf", "Table.ApproximateRowCount",
             "Table.Keys", "Table.ColumnsOfType", "Table.ToList", "Table.FirstValue", "Value.Type",
             "Value.Is", "Value.Metadata"))
      FUNCTIONS.put(name, call -> MValue.UNKNOWN);
    FUNCTIONS.put("Table.Column", MScalars::column);
    FUNCTIONS.put("Table.ColumnNames", MScalars::columnNames);
    FUNCTIONS.put("Table.ToColumns", MScalars::columns);
    FUNCTIONS.put("Table.ToRows", MScalars::rows);
    FUNCTIONS.put("Table.ToRecords", MScalars::records);
    FUNCTIONS.put("Table.TransformRows", MScalars::transformRows);

    addLists();
    addRecords();

    FUNCTIONS.put("Function.Invoke", MScalars::invoke);
    for (String name : MTexts.names()) FUNCTIONS.put(name, MTexts::apply);
    FUNCTIONS.put("Text.From", MTexts::from);
    FUNCTIONS.put("Number.ToText", MTexts::from);
    FUNCTIONS.put("Text.Combine", MTexts::combine);

    FUNCTIONS.put("Value.NativeQuery", MSources::nativeQuery);
    for (String name :
        List.of("Csv.Document", "Parquet.Document", "Html.Table", "Xml.Tables", "Xml.Document"))
      FUNCTIONS.put(name, MFiles::document);
    FUNCTIONS.put("Json.Document", MFiles::fields);
    FUNCTIONS.put("Lines.FromBinary", MFiles::lines);
    FUNCTIONS.put("Cube.Transform", MFiles::transformCube);
    for (String name : List.of("Excel.Workbook", "Access.Database", "Pdf.Tables", "Web.Page"))
      FUNCTIONS.put(name, MFiles::workbook);
    for (String name : List.of("Binary.Buffer", "Binary.Decompress", "Text.FromBinary", "Cdm.Contents"))
      FUNCTIONS.put(name, MFiles::same);
  }

  private MFunctions() {}

  private static void addLists() {
    FUNCTIONS.put("List.Buffer", call -> call.argument(0).is(MValue.Kind.LIST) ? call.argument(0) : null);
    for (String name : List.of(
             "List.Sort", "List.RemoveNulls", "List.RemoveRange", "List.Alternate", "List.MaxN", "List.MinN"))
      FUNCTIONS.put(name, MLists::someItems);
    addPart("List.FirstN", (items, count, none) -> MLists.front(items, count));
    addPart("List.LastN", (items, count, none) -> MLists.back(items, count));
    addPart("List.Skip", (items, count, none) -> MLists.behind(items, count));
    addPart("List.RemoveFirstN", (items, count, none) -> MLists.behind(items, count));
    addPart("List.RemoveLastN", (items, count, none) -> MLists.before(items, count));
    addPart("List.Range", MLists::range);
    addPart("List.Reverse", (items, none, nothing) -> MLists.reversed(items));
    FUNCTIONS.put("List.First", call -> MLists.end(call, true));
    FUNCTIONS.put("List.Last", call -> MLists.end(call, false));
    FUNCTIONS.put("List.Count", MLists::count);
    FUNCTIONS.put("List.Contains", MLists::contains);
    FUNCTIONS.put("List.Select", MLists::select);
    FUNCTIONS.put("List.Transform", MLists::transform);
    FUNCTIONS.put("List.TransformMany", MLists::transformMany);
    FUNCTIONS.put("List.Accumulate", MLists::accumulate);
    FUNCTIONS.put("List.Generate", MLists::generate);
    FUNCTIONS.put("List.Numbers", MLists::numbers);
    FUNCTIONS.put("List.Positions", MLists::positions);
    FUNCTIONS.put("List.Repeat", MLists::repeat);
    FUNCTIONS.put("List.Combine", MLists::combine);
    FUNCTIONS.put("List.Zip", MLists::zip);
    FUNCTIONS.put("List.InsertRange", MLists::insertRange);
    FUNCTIONS.put("List.ReplaceValue", MLists::replaceValue);
    FUNCTIONS.put("List.Split", MLists::split);
    FUNCTIONS.put("List.Distinct", MLists::distinct);
    FUNCTIONS.put("List.Difference", call -> MLists.difference(call, false));
    FUNCTIONS.put("List.RemoveItems", call -> MLists.difference(call, true));
    FUNCTIONS.put("List.RemoveMatchingItems", call -> MLists.difference(call, true));
    FUNCTIONS.put("List.Union", call -> MLists.ofSets(call, true));
    FUNCTIONS.put("List.Intersect", call -> MLists.ofSets(call, false));
  }

  private static void addPart(String name, MLists.Part part) {
    FUNCTIONS.put(name, call -> MLists.part(call, part));
  }

  private static void addRecords() {
    FUNCTIONS.put("Record.Field", MRecords::field);
    FUNCTIONS.put("Record.FieldOrDefault", MRecords::field);
    FUNCTIONS.put("Record.AddField", MRecords::add);
    FUNCTIONS.put("Record.SelectFields", call -> MRecords.changed(call, MColumns::select));
    FUNCTIONS.put("Record.RemoveFields", call -> MRecords.changed(call, MColumns::remove));
    FUNCTIONS.put("Record.RenameFields", call -> MRecords.changed(call, MColumns::rename));
    FUNCTIONS.put("Record.ReorderFields", call -> MRecords.changed(call, MColumns::reorder));
    FUNCTIONS.put("Record.TransformFields", call -> MRecords.changed(call, MColumns::transform));
    FUNCTIONS.put("Record.Combine", MRecords::combine);
    FUNCTIONS.put("Record.FromList", MRecords::fromList);
    FUNCTIONS.put("Record.FromTable", MRecords::fromTable);
    FUNCTIONS.put("Record.ToTable", MRecords::toTable);
    FUNCTIONS.put("Record.ToList", MRecords::toList);
    FUNCTIONS.put("Record.FieldValues", MRecords::toList);
    FUNCTIONS.put("Record.FieldNames", MRecords::fieldNames);
    FUNCTIONS.put("Record.HasFields", MRecords::hasFields);
  }

  /** What some names of the language stand for that are no functions. */
  static MValue constant(String name) {
    return switch (name) {
      case "MissingField.Error" -> MValue.number("0");
      case "MissingField.Ignore" -> MValue.number(MColumns.IGNORE);
      case "MissingField.UseNull" -> MValue.number(MColumns.USE_NULL);
      default -> null;
    };
  }

  /** Null for a function that is not known. */
  static Function find(String name) {
    Function known = FUNCTIONS.get(name);
    if (known != null) return known;
    SourceFunctions.Opening opening = SourceFunctions.find(name);
    return opening == null ? null : call -> MSources.open(call, opening);
  }
}

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
    FUNCTIONS.put("Table.DuplicateColumn", MColumns::duplicate);
    FUNCTIONS.put("Table.TransformColumns", MColumns::transform);
    FUNCTIONS.put("Table.ReplaceValue", MColumns::replace);
    FUNCTIONS.put("Table.SplitColumn", MColumns::split);
    FUNCTIONS.put("Table.CombineColumns", MColumns::combine);
    FUNCTIONS.put("Table.TransformColumnNames", call -> call.unknownColumns("computes names of columns"));
    FUNCTIONS.put("Table.PromoteHeaders", MFiles::promoteHeaders);
    FUNCTIONS.put("Table.DemoteHeaders", MColumns::demoteHeaders);
    FUNCTIONS.put("Table.View", MTables::view);
    FUNCTIONS.put("Replacer.ReplaceValue", MColumns::replacer);
    FUNCTIONS.put("Replacer.ReplaceText", MColumns::replacer);

    FUNCTIONS.put("Table.Group", MTables::group);
    FUNCTIONS.put("Table.Pivot", MTables::pivot);
    FUNCTIONS.put("Table.Unpivot", MTables::unpivot);
    FUNCTIONS.put("Table.UnpivotOtherColumns", MTables::unpivotOthers);
    FUNCTIONS.put("Table.NestedJoin", MTables::nestedJoin);
    FUNCTIONS.put("Table.FuzzyNestedJoin", MTables::nestedJoin);
    FUNCTIONS.put("Table.AddJoinColumn", MTables::nestedJoin);
    FUNCTIONS.put("Table.Join", MTables::join);
    FUNCTIONS.put("Table.FuzzyJoin", MTables::join);
    FUNCTIONS.put("Table.Combine", MTables::append);
    FUNCTIONS.put("Table.InsertRows", MTables::insertRows);
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
             "Table.Keys", "Table.ColumnsOfType", "Table.ToList", "Table.ToRows", "Table.ToColumns",
             "Table.FirstValue", "Value.Type", "Value.Is", "Value.Metadata"))
      FUNCTIONS.put(name, call -> MValue.UNKNOWN);
    FUNCTIONS.put("Table.Column", MScalars::column);
    FUNCTIONS.put("Table.ColumnNames", MScalars::columnNames);
    FUNCTIONS.put("Table.ToRecords", MScalars::records);
    FUNCTIONS.put("Table.TransformRows", MScalars::transformRows);

    for (String name : List.of("List.Buffer", "List.Distinct", "List.Sort", "List.Reverse", "List.Select",
             "List.RemoveNulls", "List.FirstN", "List.LastN", "List.RemoveItems", "List.Skip", "List.Range",
             "List.RemoveFirstN", "List.RemoveLastN"))
      FUNCTIONS.put(name, MScalars::someItems);
    FUNCTIONS.put("List.First", call -> MScalars.end(call, true));
    FUNCTIONS.put("List.Last", call -> MScalars.end(call, false));
    FUNCTIONS.put("List.Transform", MScalars::transformList);
    FUNCTIONS.put("List.Accumulate", MScalars::accumulate);
    FUNCTIONS.put("List.Combine", MScalars::combineLists);
    FUNCTIONS.put("List.Count", call -> MValue.UNKNOWN);
    FUNCTIONS.put("Record.Field", MScalars::recordField);
    FUNCTIONS.put("Record.FieldOrDefault", MScalars::recordField);
    FUNCTIONS.put("Record.AddField", MScalars::addField);
    FUNCTIONS.put("Record.FieldNames", call -> MValue.UNKNOWN);
    FUNCTIONS.put("Function.Invoke", MScalars::invoke);
    FUNCTIONS.put("Text.From", MScalars::textFrom);
    FUNCTIONS.put("Number.ToText", MScalars::textFrom);
    FUNCTIONS.put("Text.Combine", MScalars::combineTexts);
    FUNCTIONS.put("Text.Replace", MScalars::replaceText);

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

  /** Null for a function that is not known. */
  static Function find(String name) {
    Function known = FUNCTIONS.get(name);
    if (known != null) return known;
    SourceFunctions.Opening opening = SourceFunctions.find(name);
    return opening == null ? null : call -> MSources.open(call, opening);
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.List;
import java.util.Set;

/** Functions that take rows, columns and facts out of tables. */
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

  /** Lists of the cells of each column. */
  static MValue columns(MCall call) {
    List<MValue> cells = cells(call);
    if (cells == null) return untold(call);
    Origin origin = call.table(0).origin();
    return MValue.list(cells.stream().map(cell -> MValue.repeated(cell).from(origin)).toList());
  }

  /** Lists of the cells of each row. */
  static MValue rows(MCall call) {
    List<MValue> cells = cells(call);
    if (cells == null) return untold(call);
    return MValue.repeated(MValue.list(cells)).from(call.table(0).origin());
  }

  private static List<MValue> cells(MCall call) {
    List<String> names = call.table(0) == null ? null : call.table(0).names(call.budget());
    if (names == null) return null;
    return names.stream().map(name -> MCall.cell(call.find(call.table(0), name))).toList();
  }

  /** A value of which only the table is known that it is taken from. */
  private static MValue untold(MCall call) {
    return call.table(0) == null ? MValue.UNKNOWN : MValue.of(Set.of(), call.table(0).origin());
  }

  static MValue transformRows(MCall call) {
    if (call.table(0) == null) return MValue.UNKNOWN;
    MValue made = call.apply(call.argument(1), MValue.row(call.table(0)));
    return MValue.repeated(made.from(call.table(0).origin()));
  }

  /** Function.Invoke(function, arguments). */
  static MValue invoke(MCall call) {
    if (!call.argument(1).isWholeList()) return MValue.UNKNOWN;
    return call.apply(call.argument(0), call.argument(1).items.toArray(new MValue[0]));
  }
}
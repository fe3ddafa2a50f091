package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;

/** Functions that choose rows: their conditions limit what is read, and give no values. */
final class MRows {
  private MRows() {}

  /** Rows for which argument `place` is true; a number there only counts them. */
  static MValue select(MCall call, int place) {
    Relation from = call.table(0);
    MValue condition = call.argument(place);
    if (from == null || !condition.is(MValue.Kind.FUNCTION)) return MColumns.same(call, 0);
    Relation relation = Relation.over(from);
    call.limit(relation, call.written(place), List.of(call.apply(condition, MValue.row(from))));
    return MValue.table(relation);
  }

  /** Table.RemoveMatchingRows(table, rows, columns): without columns those of the rows. */
  static MValue removeMatching(MCall call) {
    Relation from = call.table(0);
    if (from == null) return MValue.UNKNOWN;
    Set<String> names = new LinkedHashSet<>();
    List<String> columns = call.texts(2);
    if (columns != null) names.addAll(columns);
    for (MValue row : columns == null ? call.argument(1).items : List.<MValue>of())
      names.addAll(row.fields.keySet());
    List<MValue> asked = new ArrayList<>(List.of(call.cells(from, names)));
    if (call.argument(1).is(MValue.Kind.LIST)) asked.add(call.argument(1));
    Relation relation = Relation.over(from);
    call.limit(relation, call.written(1), asked);
    return MValue.table(relation);
  }
}

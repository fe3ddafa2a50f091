package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.function.Function;

/** Finds what the names of DAX expressions mean in a model. */
public class DaxResolver extends ModelNames {
  /** What the expression of a calculated table leads to, and each column of the table. */
  public record TableLineage(DaxLineage whole, Function<String, DaxLineage> columns) {}

  /** Where nothing is known of other models. */
  public DaxResolver() { this((expression, name) -> null); }

  public DaxResolver(OtherModels others) { super(others); }

  public DaxLineage resolveMeasure(String text, Table home) { return resolve(text, home, false); }

  public DaxLineage resolveColumn(String text, Table home) { return resolve(text, home, true); }

  /** What a function of the model names itself, whatever it is given. */
  public DaxLineage resolveFunction(String text) {
    DaxEvaluator evaluator = new DaxEvaluator(this, DaxExpression.function(text), null, false);
    evaluator.runFunction();
    return evaluator.lineage();
  }

  private DaxLineage resolve(String text, Table home, boolean isColumn) {
    DaxEvaluator evaluator = new DaxEvaluator(this, new DaxExpression(text), home, isColumn);
    evaluator.run();
    return evaluator.lineage();
  }

  public TableLineage resolveTable(String text) {
    DaxEvaluator evaluator = new DaxEvaluator(this, new DaxExpression(text), null, false);
    DaxTable table = evaluator.run();
    DaxLineage whole = evaluator.lineage();
    boolean certain = table.known && whole.faults.isEmpty() && whole.unresolved.isEmpty();
    return new TableLineage(whole, sourceColumn -> columnOf(sourceColumn, table, certain, evaluator));
  }

  /** `sourceColumn` is Name, [Name] or Table[Name]. Null where it cannot be told. */
  private DaxLineage columnOf(String sourceColumn, DaxTable table, boolean certain, DaxEvaluator evaluator) {
    if (sourceColumn.isEmpty()) return null;
    int bracket = sourceColumn.indexOf('[');
    String owner =
        bracket < 0 ? "" : sourceColumn.substring(0, bracket).replaceAll("^'|'$", "").replace("''", "'");
    String name = bracket < 0 ? sourceColumn
                              : sourceColumn.substring(bracket + 1).replaceAll("\\]$", "").replace("]]", "]");
    String written = owner.isEmpty() ? null : owner;
    Table origin = owner.isEmpty() ? null : findTable(owner);
    DaxTable.Column column = origin == null ? table.find(name) : table.find(origin, name);
    if (column != null) return evaluator.lineage(column.sources());
    if (certain && !table.has(name)) return DaxLineage.unresolved(DaxNode.column(0, written, name));
    boolean isThere = origin != null && findColumn(origin, name) != null;
    return isThere ? evaluator.lineage(Sources.of(findColumn(origin, name))) : null;
  }
}

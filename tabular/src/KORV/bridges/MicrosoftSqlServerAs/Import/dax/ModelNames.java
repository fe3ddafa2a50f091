package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.model.Labels;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.Collection;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** The tables, columns, measures and functions of a model by name. The first object of a name stays. */
public class ModelNames {
  /** A table with its columns by folded name, in the order of the definition. */
  public static final class Table {
    final ModelObject dimension;
    final Map<String, ModelObject> columns = new LinkedHashMap<>();

    Table(ModelObject dimension) { this.dimension = dimension; }
  }

  /** The measures of other models. */
  public interface OtherModels {
    /** A measure of the model that a shared expression opens; null where that cannot be told. */
    ModelObject measure(String expression, String name);
  }

  private final OtherModels others;
  private final Map<String, Table> tables = new LinkedHashMap<>();
  private final Map<String, Table> calendars = new HashMap<>();
  private final Map<String, ModelObject> measures = new LinkedHashMap<>();
  private final Map<String, DaxExpression> functions = new HashMap<>();

  ModelNames(OtherModels others) { this.others = others; }

  public Table addTable(String name, ModelObject dimension) {
    Table table = new Table(dimension);
    tables.putIfAbsent(Names.fold(name), table);
    return table;
  }

  public void addColumn(Table table, String name, ModelObject attribute) {
    table.columns.putIfAbsent(Names.fold(name), attribute);
  }

  public void addMeasure(String name, ModelObject measure) {
    measures.putIfAbsent(Names.fold(name), measure);
  }

  /** A calendar stands for the table that it is of. */
  public void addCalendar(String name, Table table) { calendars.putIfAbsent(Names.fold(name), table); }

  public void addFunction(String name, String text) {
    functions.putIfAbsent(Names.fold(name), DaxExpression.function(text));
  }

  public Table findTable(String name) { return tables.get(Names.fold(name)); }

  Table findCalendar(String name) { return calendars.get(Names.fold(name)); }

  public ModelObject findMeasure(String name) { return measures.get(Names.fold(name)); }

  public ModelObject findColumn(String table, String column) {
    Table found = findTable(table);
    return found == null ? null : findColumn(found, column);
  }

  public ModelObject findColumn(Table table, String column) { return table.columns.get(Names.fold(column)); }

  /** The names of all tables and measures, as the model has them; without the parts of KPIs. */
  public List<String> tableNames() {
    return tables.values().stream().map(table -> table.dimension.name()).toList();
  }

  public List<String> measureNames() {
    return measures.values()
        .stream()
        .filter(measure -> Labels.CALCULATED_MEASURE.equals(measure.get("nativeType")))
        .map(ModelObject::name)
        .toList();
  }

  /** Null when there is no table of that name. */
  public ModelObject dimensionOf(String table) {
    Table found = findTable(table);
    return found == null ? null : found.dimension;
  }

  public Collection<ModelObject> columnsOf(String table) {
    Table found = findTable(table);
    return found == null ? List.of() : found.columns.values();
  }

  ModelObject findElsewhere(String expression, String measure) { return others.measure(expression, measure); }

  DaxExpression findFunction(String name) { return functions.get(Names.fold(name)); }
}

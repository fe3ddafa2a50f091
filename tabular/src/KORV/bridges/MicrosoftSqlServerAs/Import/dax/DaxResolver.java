package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** Finds what the names of DAX expressions mean in a model. The first object of a name stays. */
public final class DaxResolver {
  /** A table with its columns by folded name. */
  public static final class Table {
    final ModelObject dimension;
    final Map<String, ModelObject> columns = new HashMap<>();

    Table(ModelObject dimension) {
      this.dimension = dimension;
    }
  }

  /** What an expression leads to, each once and in the order of the text. */
  public static final class Lineage {
    public final Set<ModelObject> features = new LinkedHashSet<>();
    public final Set<ModelObject> classifiers = new LinkedHashSet<>();
    public final Set<String> unresolved = new LinkedHashSet<>();
  }

  private final Map<String, Table> tables = new HashMap<>();
  private final Map<String, ModelObject> measures = new HashMap<>();
  private final Map<String, DaxExpression> functions = new HashMap<>();

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

  /** A user function: what its text names belongs to every expression that calls it. */
  public void addFunction(String name, String text) {
    functions.putIfAbsent(Names.fold(name), new DaxExpression(text));
  }

  public Table findTable(String name) {
    return tables.get(Names.fold(name));
  }

  public ModelObject findMeasure(String name) {
    return measures.get(Names.fold(name));
  }

  public ModelObject findColumn(String table, String column) {
    Table found = findTable(table);
    return found == null ? null : found.columns.get(Names.fold(column));
  }

  public ModelObject findColumn(Table table, String column) {
    return table.columns.get(Names.fold(column));
  }

  /** The column that an expression takes over from one of the tables that it names. */
  public ModelObject findTaken(DaxExpression expression, String name) {
    return expression.makesColumn(name) ? null : findInUsedTables(expression, name);
  }

  /** `home` is the table that the expression belongs to, `rows` whether its columns are meant first. */
  public Lineage resolve(DaxExpression expression, Table home, boolean rows) {
    Lineage lineage = new Lineage();
    resolveOne(expression, expression.references, home, rows, lineage);
    Set<DaxExpression> entered = new LinkedHashSet<>();
    List<DaxExpression> waiting = new ArrayList<>(List.of(expression));
    for (int i = 0; i < waiting.size(); ++i) {
      for (String call : waiting.get(i).calls) {
        DaxExpression function = functions.get(call);
        if (function == null || !entered.add(function)) continue;
        waiting.add(function);
        resolveOne(function, function.references, null, false, lineage);
      }
    }
    return lineage;
  }

  /** The same for some of an expression's references. */
  public Lineage resolve(DaxExpression expression, List<DaxExpression.Reference> references, Table home) {
    Lineage lineage = new Lineage();
    resolveOne(expression, references, home, false, lineage);
    return lineage;
  }

  private void resolveOne(DaxExpression expression, List<DaxExpression.Reference> references, Table home,
      boolean rows, Lineage lineage) {
    for (DaxExpression.Reference reference : references) {
      if (reference.column() == null) {
        resolveTable(expression, reference, lineage);
        continue;
      }
      ModelObject found = reference.table() == null
          ? findUnqualified(expression, reference.column(), home, rows)
          : findQualified(reference.table(), reference.column());
      if (found != null) {
        lineage.features.add(found);
        lineage.classifiers.add(found.owner);
      } else if (reference.table() != null || !expression.makesColumn(reference.column())) {
        lineage.unresolved.add(reference.written());
      }
    }
  }

  private void resolveTable(DaxExpression expression, DaxExpression.Reference reference, Lineage lineage) {
    Table table = findTable(reference.table());
    boolean bare = expression.isBareWord(reference);
    if (table != null && !(bare && expression.isLocalName(reference.table()))) {
      lineage.classifiers.add(table.dimension);
    } else if (table == null && !bare) {
      lineage.unresolved.add(reference.written());
    }
  }

  private ModelObject findQualified(String table, String name) {
    ModelObject column = findColumn(table, name);
    // A measure may be written with any table in front.
    return column != null || findTable(table) == null ? column : findMeasure(name);
  }

  private ModelObject findUnqualified(DaxExpression expression, String name, Table home, boolean rows) {
    ModelObject own = home == null ? null : home.columns.get(Names.fold(name));
    ModelObject measure = findMeasure(name);
    if (rows && own != null) return own;
    if (measure != null) return measure;
    if (expression.makesColumn(name)) return null;
    return own != null ? own : findInUsedTables(expression, name);
  }

  /** The column of the one table that the expression names and that has such a column. */
  private ModelObject findInUsedTables(DaxExpression expression, String name) {
    Set<ModelObject> found = new LinkedHashSet<>();
    for (String table : expression.usedTables) {
      ModelObject column = findColumn(table, name);
      if (column != null) found.add(column);
    }
    return found.size() == 1 ? found.iterator().next() : null;
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashSet;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;

/** Evaluates the structure of one expression: what each name means where it stands. */
final class DaxEvaluator implements DaxCall.Evaluation {
  private static final int MAX_DEPTH = 400; // calls of Java within each other, on the stack that it has
  private static final int MAX_STEPS = 1_000_000; // in functions that call others several times

  private final ModelNames names;
  private final DaxExpression expression;
  private final ModelNames.Table home;
  private final boolean isColumn;
  private final List<DaxLineage.Entry> log = new ArrayList<>();
  private final Set<String> unresolved = new LinkedHashSet<>();
  private final Set<String> faults = new LinkedHashSet<>();
  /** What it calls, beside what it gives. */
  private final DaxLineage calls = DaxLineage.empty();
  private final Set<DaxExpression> entered = new HashSet<>();
  /** What a query defines, which its functions may name. */
  private DaxContext.Scope defined;
  private DaxExpression current;
  private String function = "";
  private int depth;
  private int steps;
  private boolean tooDeep;
  private boolean tooMuch;

  /** `home` is the table that the expression belongs to, `isColumn` whether it stands in its rows. */
  DaxEvaluator(ModelNames names, DaxExpression expression, ModelNames.Table home, boolean isColumn) {
    this.names = names;
    this.expression = expression;
    this.home = home;
    this.isColumn = isColumn;
    current = expression;
  }

  /** The table that the expression gives, UNKNOWN when it gives none. */
  DaxTable run() {
    DaxContext.Rows rows = isColumn && home != null ? new DaxContext.Rows(DaxTable.of(home), null) : null;
    if (expression.fault != null) fault(expression.fault);
    return value(expression.root, new DaxContext(new DaxContext.Scope(null), rows, null)).asTable();
  }

  /** Evaluates the expression as a function of which nobody knows what it is given. */
  void runFunction() {
    DaxContext inside = new DaxContext(new DaxContext.Scope(null), null, null);
    if (expression.fault != null) fault(expression.fault);
    entered.add(expression);
    bind(expression, List.of(), inside);
    value(expression.root, inside);
  }

  DaxLineage lineage() {
    DaxLineage lineage = DaxLineage.of(log);
    lineage.unresolved.addAll(unresolved);
    lineage.faults.addAll(faults);
    lineage.addCalls(calls);
    lineage.countIterated();
    return lineage;
  }

  DaxLineage lineage(Sources sources) { return DaxLineage.of(sources, log); }

  @Override
  public int noted() {
    return log.size();
  }

  @Override
  public void note(DaxLineage.Entry.Kind kind, Sources sources) {
    log.add(new DaxLineage.Entry(kind, null, sources));
  }

  private void note(DaxLineage.Entry.Kind kind, ModelObject object) {
    log.add(new DaxLineage.Entry(kind, object, null));
  }

  private void fault(DaxFault fault) {
    faults.add((function.isEmpty() ? "" : "function '" + function + "', ") + fault.in(current.places()));
  }

  @Override
  public boolean isTable(DaxNode name) {
    return names.findTable(name.name()) != null || names.findCalendar(name.name()) != null;
  }

  @Override
  public DaxContext.Value columnValue(DaxNode node, DaxContext context) {
    int begin = log.size();
    if (!node.is(DaxNode.Kind.COLUMN) || node.table() != null) return value(node, context);
    DaxTable.Column column = rowColumn(node, context);
    if (column == null) return value(node, context);
    return new DaxContext.Value(Sources.range(begin, log.size()), null, column);
  }

  @Override
  public DaxContext.Value value(DaxNode node, DaxContext context) {
    int begin = log.size();
    if (depth >= MAX_DEPTH) {
      if (!tooDeep) fault(new DaxFault(node.place(), "nested too deeply"));
      tooDeep = true;
      certainNames(node);
      return new DaxContext.Value(Sources.range(begin, log.size()), DaxTable.UNKNOWN, null);
    }
    ++depth;
    if (!entered.isEmpty()) ++steps;
    DaxTable.Column column = null;
    DaxTable table = null;
    switch (node.kind()) {
      case COLUMN -> column = column(node, context);
      case TABLE, WORD -> {
        DaxContext.Argument argument = argument(node, context);
        if (argument != null) {
          DaxContext.Value used = use(argument, context);
          column = used.column();
          table = used.table();
        } else {
          table = name(node, context);
        }
      }
      case CALL -> table = call(node, context);
      case ROWS -> table = rows(node, context);
      case BLOCK -> table = block(node, context);
      case CONSTANT, TEXT -> {
      }
      default -> node.parts().forEach(part -> value(part, context));
    }
    --depth;
    return new DaxContext.Value(Sources.range(begin, log.size()), table, column);
  }

  /** What a part leads to that is nested too deeply to be evaluated: the columns named with their tables. */
  private void certainNames(DaxNode root) {
    Deque<DaxNode> waiting = new ArrayDeque<>(List.of(root));
    while (!waiting.isEmpty()) {
      DaxNode node = waiting.pop();
      if (node.is(DaxNode.Kind.COLUMN) && node.table() != null) {
        ModelObject found = names.findColumn(node.table(), node.name());
        if (found != null) note(DaxLineage.Entry.Kind.FEATURE, found);
      }
      for (int i = node.parts().size(); i-- > 0;) waiting.push(node.parts().get(i));
    }
  }

  private DaxTable block(DaxNode node, DaxContext context) {
    DaxContext inner = context.in(new DaxContext.Scope(context.scope()));
    if (node == expression.root) defined = inner.scope();
    DaxTable table = null;
    DaxTable rows = null; // of a query's latest result
    for (DaxNode part : node.parts()) {
      if (part.is(DaxNode.Kind.DEFINITION)) {
        inner.scope().put(Names.fold(part.name()), value(part.parts().get(0), inner));
      } else {
        DaxContext.Value result = value(part, rows == null ? inner : inner.inRowsOf(rows));
        table = result.isTable() ? result.asTable() : null;
        if (result.table() != null) rows = result.table();
      }
    }
    return table;
  }

  /** Columns of a table constructor: [Value], or [Value1], [Value2] where rows have several. */
  private DaxTable rows(DaxNode node, DaxContext context) {
    List<List<Sources>> columns = new ArrayList<>();
    for (DaxNode row : node.parts()) {
      List<DaxNode> cells = row.is(DaxNode.Kind.TUPLE) ? row.parts() : List.of(row);
      for (int i = 0; i < cells.size(); ++i) {
        if (columns.size() <= i) columns.add(new ArrayList<>());
        columns.get(i).add(value(cells.get(i), context).sources());
      }
    }
    List<DaxTable.Column> made = new ArrayList<>();
    for (List<Sources> cells : columns) {
      String name = columns.size() == 1 ? "value" : "value" + (made.size() + 1);
      made.add(new DaxTable.Column(name, null, Sources.all(cells)));
    }
    return DaxTable.of(made);
  }

  /** A variable or parameter, or a table that a query defines. */
  private static DaxContext.Value local(DaxNode node, DaxContext context) {
    boolean bare = node.is(DaxNode.Kind.WORD);
    if (!bare && !node.is(DaxNode.Kind.TABLE)) return null;
    String name = Names.fold(node.name());
    DaxContext.Value found = bare ? context.scope().find(name) : null;
    return found == null ? context.scope().find("'" + name + "'") : found;
  }

  /** Null unless `node` is a parameter that is evaluated here. */
  private static DaxContext.Argument argument(DaxNode node, DaxContext context) {
    DaxContext.Value local = local(node, context);
    return local == null ? null : local.argument();
  }

  /** An argument belongs to the caller, but stands in the rows that the function's body goes through. */
  private DaxContext.Value use(DaxContext.Argument argument, DaxContext context) {
    if (isTooMuch(argument.node().place())) return new DaxContext.Value(Sources.NONE, DaxTable.UNKNOWN, null);
    DaxExpression body = current;
    String bodyFunction = function;
    current = argument.caller();
    function = argument.callerFunction();
    entered.remove(body);
    DaxContext.Value used = columnValue(argument.node(), argument.context().within(context));
    entered.add(body);
    current = body;
    function = bodyFunction;
    return used;
  }

  private DaxTable name(DaxNode node, DaxContext context) {
    DaxContext.Value local = local(node, context);
    if (local != null) {
      note(DaxLineage.Entry.Kind.VALUE, local.sources());
      return local.isTable() ? local.asTable() : null;
    }
    ModelNames.Table table = names.findTable(node.name());
    if (table == null) {
      table = names.findCalendar(node.name());
      if (table != null && isOwnText()) calls.calendars.add(node.name());
    }
    if (table != null) {
      note(DaxLineage.Entry.Kind.TABLE, table.dimension);
      return DaxTable.of(table);
    }
    fault(new DaxFault(node.place(), "unknown table " + node.written()));
    unresolved.add(node.written());
    return DaxTable.UNKNOWN;
  }

  private DaxTable.Column column(DaxNode node, DaxContext context) {
    if (node.table() != null && !node.table().isEmpty()) return qualified(node, context);
    ModelObject measure = node.table() == null ? names.findMeasure(node.name()) : null;
    DaxContext.Value local = context.scope().find("[" + Names.fold(node.name()) + "]");
    if (local != null) {
      note(DaxLineage.Entry.Kind.VALUE, local.sources());
      return null;
    }
    if (measure != null && !isOwnColumn(measure, node.name())) {
      note(DaxLineage.Entry.Kind.FEATURE, measure);
      return null;
    }
    DaxTable.Column column = rowColumn(node, context);
    if (column == null && !hasUnknownRows(context)) unresolved.add(node.written());
    return column;
  }

  /**
   * No table can have a measure and a column of one name, so the column of a column's own table is meant.
   */
  private boolean isOwnColumn(ModelObject measure, String name) {
    return isColumn && names.findColumn(home, name) != null
        && measure.owner.name().equals(home.dimension.name());
  }

  private static boolean hasUnknownRows(DaxContext context) {
    for (DaxContext.Rows rows = context.rows(); rows != null; rows = rows.outer()) {
      if (!rows.table().known) return true;
    }
    return false;
  }

  /** The column [name] of the innermost row that has one, else of the table of the expression. */
  private DaxTable.Column rowColumn(DaxNode node, DaxContext context) {
    for (DaxContext.Rows rows = context.rows(); rows != null; rows = rows.outer()) {
      DaxTable.Column column = rows.table().find(node.name());
      if (column != null) {
        note(DaxLineage.Entry.Kind.VALUE, column.sources());
        return column;
      }
      if (!rows.table().known) return null;
    }
    ModelObject own = home == null || !function.isEmpty() || "".equals(node.table())
        ? null
        : names.findColumn(home, node.name());
    if (own == null) return null;
    note(DaxLineage.Entry.Kind.FEATURE, own);
    return new DaxTable.Column(node.name(), home, Sources.of(own));
  }

  private DaxTable.Column qualified(DaxNode node, DaxContext context) {
    DaxContext.Value defined = context.scope().find("[" + Names.fold(node.name()) + "]");
    if (defined != null) {
      note(DaxLineage.Entry.Kind.VALUE, defined.sources());
      return null;
    }
    ModelNames.Table table = names.findTable(node.table());
    if (table == null) return definedColumn(node, context);
    ModelObject column = names.findColumn(table, node.name());
    if (column != null) {
      note(DaxLineage.Entry.Kind.FEATURE, column);
      return new DaxTable.Column(node.name(), table, Sources.of(column));
    }
    // A measure may be written with any table in front.
    ModelObject measure = names.findMeasure(node.name());
    if (measure == null) {
      unresolved.add(node.written());
    } else {
      note(DaxLineage.Entry.Kind.FEATURE, measure);
    }
    return null;
  }

  /** A variable's table has columns without that name in front, one that a query defines has them with it. */
  private DaxTable.Column definedColumn(DaxNode node, DaxContext context) {
    String name = Names.fold(node.table());
    DaxContext.Value table = context.scope().find("'" + name + "'");
    if (table == null && context.scope().find(name) == null) unresolved.add(node.written());
    DaxTable.Column column = table == null ? null : table.asTable().find(node.name());
    if (column != null) note(DaxLineage.Entry.Kind.VALUE, column.sources());
    return column;
  }

  private DaxTable call(DaxNode node, DaxContext context) {
    DaxExpression own = expression.functions.get(Names.fold(node.name()));
    if (own == null) own = names.findFunction(node.name());
    if (own != null) return callOwn(node, own, context);
    DaxFunctions.Function known = DaxFunctions.find(node.name());
    if (known != null) {
      if (DaxFunctions.choosesRelationship(node.name())) noteJoin(node, context);
      if (DaxFunctions.readsOtherModel(node.name())) noteElsewhere(node);
      return new DaxCall(this, known, node, context).run();
    }
    fault(new DaxFault(node.place(), "unknown function " + node.name()));
    calls.unknownFunctions.add(node.name());
    for (DaxNode argument : node.parts()) {
      if (!DaxCall.isWord(argument, context) || isTable(argument)) value(argument, context);
    }
    return DaxTable.UNKNOWN;
  }

  /** EXTERNALMEASURE(name, type, shared expression). */
  private void noteElsewhere(DaxNode node) {
    List<DaxNode> parts = node.parts();
    if (parts.size() < 3 || !parts.get(0).is(DaxNode.Kind.TEXT) || !parts.get(2).is(DaxNode.Kind.TEXT)) return;
    ModelObject measure = names.findElsewhere(parts.get(2).name(), parts.get(0).name());
    if (measure != null) note(DaxLineage.Entry.Kind.FEATURE, measure);
  }

  private void noteJoin(DaxNode node, DaxContext context) {
    if (node.parts().size() < 2) return;
    ModelObject from = joinedColumn(node.parts().get(0), context);
    ModelObject to = joinedColumn(node.parts().get(1), context);
    if (from != null && to != null) calls.joins.add(new DaxLineage.Join(from, to));
  }

  /** A column that is named, or that a parameter is given; null for anything else. */
  private ModelObject joinedColumn(DaxNode node, DaxContext context) {
    DaxContext.Argument given = argument(node, context);
    while (given != null) {
      node = given.node();
      context = given.context();
      given = argument(node, context);
    }
    DaxContext.Value local = local(node, context);
    if (local != null) return local.column() == null ? null : local.column().sources().object();
    if (!node.is(DaxNode.Kind.COLUMN)) return null;
    if (node.table() != null && !node.table().isEmpty()) return names.findColumn(node.table(), node.name());
    return home == null ? null : names.findColumn(home, node.name());
  }

  /** A function of the model, whose parameters stand for the values of the arguments. */
  private DaxTable callOwn(DaxNode node, DaxExpression own, DaxContext context) {
    if (isOwnText() && !own.isOfQuery) calls.functions.add(node.name());
    DaxContext inside = new DaxContext(new DaxContext.Scope(own.isOfQuery ? defined : null), null, null);
    List<DaxContext.Value> values = new ArrayList<>();
    for (int i = 0; i < node.parts().size(); ++i) values.add(given(own, i, node.parts().get(i), context));
    steps += own.text.length();
    if (isTooMuch(node.place()) || !entered.add(own)) return DaxTable.UNKNOWN;
    DaxExpression outer = current;
    String outerFunction = function;
    current = own;
    function = node.name();
    if (own.fault != null) fault(own.fault);
    bind(own, values, inside);
    DaxContext.Value result = value(own.root, inside);
    entered.remove(own);
    current = outer;
    function = outerFunction;
    return result.isTable() ? result.asTable() : null;
  }

  /** Whether the text that is being evaluated is the expression's, not that of a function of the model. */
  private boolean isOwnText() { return function.isEmpty() || current.isOfQuery; }

  private boolean isTooMuch(int place) {
    if (steps <= MAX_STEPS) return false;
    if (!tooMuch) fault(new DaxFault(place, "too many calls of functions"));
    tooMuch = true;
    return true;
  }

  /** What a function is given for a parameter. */
  private DaxContext.Value given(DaxExpression own, int place, DaxNode node, DaxContext context) {
    boolean later = place < own.parameters.size() && own.parameters.get(place).isExpression();
    if (DaxCall.isWord(node, context) && !isTable(node))
      return new DaxContext.Value(Sources.NONE, null, null);
    if (!later) return value(node, context);
    DaxContext.Argument argument = new DaxContext.Argument(node, context, current, function);
    return new DaxContext.Value(Sources.NONE, null, null, argument);
  }

  private void bind(DaxExpression own, List<DaxContext.Value> values, DaxContext inside) {
    for (int i = 0; i < own.parameters.size(); ++i) {
      DaxExpression.Parameter parameter = own.parameters.get(i);
      DaxContext.Value value = new DaxContext.Value(Sources.NONE, DaxTable.UNKNOWN, null);
      if (i < values.size()) {
        value = values.get(i);
      } else if (parameter.value() != null) {
        value = value(parameter.value(), inside);
      }
      inside.scope().put(parameter.name(), value);
    }
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.List;
import java.util.Set;

/** A call of a function of the language: its arguments, each where it is evaluated, and its table. */
final class DaxCall {
  /** What a call asks of what evaluates the expression around it. */
  interface Evaluation {
    DaxContext.Value value(DaxNode node, DaxContext context);

    /** A column where a measure of its name cannot be meant. */
    DaxContext.Value columnValue(DaxNode node, DaxContext context);

    boolean isTable(DaxNode name);

    void note(DaxLineage.Entry.Kind kind, Sources sources);

    int noted();
  }

  private static final Set<String> WORDS = Set.of("day", "month", "quarter", "week", "year", "hour", "minute",
      "second", "asc", "desc", "skip", "dense", "both", "none", "oneway", "oneway_leftfiltersright",
      "oneway_rightfiltersleft", "integer", "int64", "double", "string", "boolean", "currency", "decimal",
      "datetime", "date", "time", "variant", "text", "keep", "blanks", "default", "first", "last", "abs",
      "rel", "extending", "precise", "anchored", "endaligned", "rows", "columns", "highestparent",
      "lowestparent", "true", "false");

  private final Evaluation evaluation;
  private final DaxFunctions.Function function;
  private final List<DaxNode> arguments;
  private final DaxContext context;
  private final int begin;
  private DaxContext rows;
  private final List<DaxTable> tables = new ArrayList<>(2);
  private final List<DaxTable.Column> made = new ArrayList<>(2);

  DaxCall(Evaluation evaluation, DaxFunctions.Function function, DaxNode node, DaxContext context) {
    this.evaluation = evaluation;
    this.function = function;
    this.arguments = node.parts();
    this.context = context;
    rows = context;
    begin = evaluation.noted();
  }

  /** Whether a name alone is a word of the language here. */
  static boolean isWord(DaxNode node, DaxContext context) {
    return node.is(DaxNode.Kind.WORD) && WORDS.contains(Names.fold(node.name()))
        && context.scope().find(Names.fold(node.name())) == null;
  }

  /** Evaluates the arguments; gives the table that the call gives, null for a single value. */
  DaxTable run() {
    for (int i = 0; i < arguments.size();) i = argument(i);
    DaxTable first = tables.isEmpty() ? DaxTable.UNKNOWN : tables.get(0);
    switch (function.result()) {
      case AGGREGATE -> evaluation.note(DaxLineage.Entry.Kind.ITERATED, first.rows);
      case COUNT -> evaluation.note(DaxLineage.Entry.Kind.COUNTED, first.rows);
      default -> {
      }
    }
    return switch (function.result()) {
      case GROUP -> context.group() == null ? DaxTable.UNKNOWN : context.group();
      case SAME -> first;
      case COLUMNS -> tables.size() == 1 ? first : DaxTable.joined(tables);
      case ADD -> first.plus(made);
      case MADE, DATA -> DaxTable.of(made);
      case JOIN -> DaxTable.joined(tables);
      case UNION -> DaxTable.united(tables);
      case DATE -> single("Date");
      case SERIES -> single("value");
      case TREAT -> treated();
      case UNKNOWN_TABLE -> DaxTable.UNKNOWN;
      default -> null;
    };
  }

  /** Evaluates an argument, and the one that belongs to it; gives the place of the next. */
  private int argument(int i) {
    DaxNode node = arguments.get(i);
    char how = function.argument(i);
    boolean makes =
        function.result() == DaxFunctions.Result.ADD || function.result() == DaxFunctions.Result.MADE;
    if (makes && how != 'T' && function.first().indexOf('.') < 0) return makeColumn(i);
    if (function.result() == DaxFunctions.Result.DATA && node.is(DaxNode.Kind.TEXT)) {
      made.add(new DaxTable.Column(node.name(), null, Sources.NONE));
      return i + 1;
    }
    if (how == 'x') return i + 1;
    boolean wantsTable = how == 't' || how == 'T';
    if (!wantsTable && isWord(node, context) && (how == 'k' || !evaluation.isTable(node))) return i + 1;
    if (how == 'n' && node.is(DaxNode.Kind.TEXT)) {
      made.add(new DaxTable.Column(node.name(), null, Sources.NONE));
      return i + 1;
    }
    DaxContext.Value value = how == 'c' ? evaluation.columnValue(node, rows)
                                        : evaluation.value(node, how == 'r' || how == 'k' ? rows : outer());
    boolean joins = how == 'r' && function.result() == DaxFunctions.Result.JOIN;
    if (wantsTable || how == 'c' || joins) tables.add(value.asTable());
    if (how == 'T' && value.isTable()) rows = context.inRowsOf(value.asTable()).grouping(value.asTable());
    return i + 1;
  }

  private DaxContext outer() {
    return function.result() == DaxFunctions.Result.EARLIER ? context.outside() : context;
  }

  /** "Name", value; or a column that keeps its name; or a table that only limits the rows. */
  private int makeColumn(int i) {
    DaxNode node = arguments.get(i);
    if (node.is(DaxNode.Kind.TEXT) && function.argument(i) == 'm') {
      made.add(new DaxTable.Column(node.name(), null, Sources.NONE));
      return i + 1;
    }
    if (node.is(DaxNode.Kind.TEXT) && i + 1 < arguments.size()) {
      Sources sources = evaluation.value(arguments.get(i + 1), rows).sources();
      made.add(new DaxTable.Column(node.name(), null, sources));
      return i + 2;
    }
    DaxContext.Value value = evaluation.columnValue(node, rows);
    boolean lists = node.is(DaxNode.Kind.CALL) && Names.fold(node.name()).startsWith("rollup");
    if (value.column() != null) {
      made.add(value.column());
    } else if (lists) {
      made.addAll(value.asTable().columns());
    }
    return i + 1;
  }

  private DaxTable single(String name) {
    Sources sources = Sources.range(begin, evaluation.noted());
    return DaxTable.of(List.of(new DaxTable.Column(name, null, sources)));
  }

  private DaxTable treated() {
    if (tables.isEmpty()) return DaxTable.UNKNOWN;
    List<DaxTable.Column> values = tables.get(0).columns();
    List<DaxTable.Column> columns = new ArrayList<>();
    for (DaxTable named : tables.subList(1, tables.size())) {
      if (named.columns().isEmpty()) return DaxTable.UNKNOWN;
      DaxTable.Column column = named.columns().get(0);
      int place = columns.size();
      columns.add(place >= values.size()
              ? column
              : column.of(Sources.all(List.of(values.get(place).sources(), column.sources()))));
    }
    return DaxTable.of(columns);
  }
}

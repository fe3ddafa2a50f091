package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Follows the steps of an M query from a database to the columns that it gives. A step that is not understood
 * ends in "unknown", never in a guess.
 */
public final class MQuery {
  /** What a model offers to its queries. */
  public interface Context {
    /** The text of a shared expression, or null. */
    String sharedExpression(String name);

    /** The key of a data source of the model by its name, or null. */
    String dataSource(String name);

    /** The key of a connection that a query opens by itself. */
    String connection(String function, String server, String database);
  }

  /** Steps that lead to steps, and queries that lead to queries. */
  private static final int MAX_DEPTH = 200;

  /** Functions whose result has the columns of their first argument, some left out or changed in place. */
  private static final Set<String> SAME_COLUMNS = Set.of("Table.RemoveColumns", "Table.SelectColumns",
      "Table.SelectRows", "Table.TransformColumnTypes", "Table.ReorderColumns", "Table.Sort",
      "Table.Distinct", "Table.Buffer", "Table.ReplaceValue", "Table.ReplaceErrorValues",
      "Table.RemoveRowsWithErrors", "Table.SelectRowsWithErrors", "Table.FirstN", "Table.LastN", "Table.Skip",
      "Table.Range", "Table.TransformColumns", "Table.FillDown", "Table.FillUp", "Table.StopFolding",
      "Table.RemoveFirstN", "Table.RemoveLastN", "Table.ReverseRows", "Table.AlternateRows", "Table.AddKey",
      "Table.View", "Value.ReplaceType", "Table.NestedJoin", "Table.AddIndexColumn", "Table.AddColumn",
      "Table.DuplicateColumn", "Table.RenameColumns", "Table.ExpandTableColumn");

  /** A value: at most one of the members is set, none when it is unknown. */
  private static final class Value {
    static final Value UNKNOWN = new Value();

    String text;
    String connection;
    /** A server without its database yet. */
    String server;
    String function;
    String schema = "";
    Relation relation;
    List<Value> list;
    Map<String, Value> record;
    /** Tables that joins have put into a column, by its name. */
    Map<String, Relation> nested = Map.of();

    static Value of(Relation relation) {
      Value value = new Value();
      value.relation = relation;
      return value;
    }
  }

  private final MTokens tokens;
  private final Context context;
  private final Relation.Budget budget;
  /** Shared expressions by name, each evaluated once for all queries of a model. */
  private final Map<String, Value> shared;
  private final Set<String> openQueries;
  private final int outerDepth;

  private static final class Environment {
    final Environment outer;
    final Map<String, int[]> steps = new HashMap<>();
    final Map<String, Value> values = new HashMap<>();

    Environment(Environment outer) {
      this.outer = outer;
    }
  }

  private MQuery(String text, Context context, Map<String, Value> shared, Set<String> openQueries, int depth) {
    tokens = new MTokens(text);
    this.context = context;
    this.shared = shared;
    this.openQueries = openQueries;
    budget = new Relation.Budget(text.length());
    outerDepth = depth;
  }

  /** Reads the queries of one model. */
  public static final class Reader {
    private final Context context;
    private final Map<String, Value> shared = new HashMap<>();

    public Reader(Context context) {
      this.context = context;
    }

    /** What a query reads; null when it cannot be told. */
    public Relation read(String text) {
      MQuery query = new MQuery(text, context, shared, new HashSet<>(), 0);
      return query.evaluate(0, query.tokens.size(), new Environment(null), 0).relation;
    }
  }

  private Value evaluate(int begin, int end, Environment environment, int depth) {
    if (begin >= end || outerDepth + depth > MAX_DEPTH) return Value.UNKNOWN;
    if (tokens.get(begin).isWord("let")) return evaluateLet(begin + 1, end, environment, depth);
    int meta = find(begin, end, "meta");
    if (meta < end) return evaluate(begin, meta, environment, depth + 1);
    int and = findSign(begin, end, '&');
    if (and < end)
      return join(
          evaluate(begin, and, environment, depth + 1), evaluate(and + 1, end, environment, depth + 1));
    return evaluateOperand(begin, end, environment, depth);
  }

  private static Value join(Value left, Value right) {
    if (left.text != null && right.text != null) {
      Value value = new Value();
      value.text = left.text + right.text;
      return value;
    }
    if (left.relation == null || right.relation == null) return Value.UNKNOWN;
    return Value.of(Relation.append(List.of(left.relation, right.relation)));
  }

  private Value evaluateLet(int begin, int end, Environment outer, int depth) {
    Environment environment = new Environment(outer);
    int in = find(begin, end, "in");
    int step = begin;
    for (int i = begin; i <= in; i = after(i, in)) {
      if (i < in && !tokens.get(i).isSign(',')) continue;
      if (tokens.get(step).isName() && tokens.get(step + 1).isSign('=')) {
        environment.steps.put(tokens.get(step).value(), new int[] {step + 2, i});
      }
      step = i + 1;
    }
    // In order, so that a long chain of steps is no deep chain of calls.
    List<int[]> ranges = new ArrayList<>(environment.steps.values());
    ranges.sort((a, b) -> Integer.compare(a[0], b[0]));
    for (int[] range : ranges) lookUp(tokens.get(range[0] - 2).value(), environment, depth);
    return evaluate(in + 1, end, environment, depth + 1);
  }

  private Value lookUp(String name, Environment environment, int depth) {
    for (Environment at = environment; at != null; at = at.outer) {
      Value known = at.values.get(name);
      if (known != null) return known;
      int[] range = at.steps.get(name);
      if (range == null) continue;
      at.values.put(name, Value.UNKNOWN);
      Value value = evaluate(range[0], range[1], at, depth + 1);
      at.values.put(name, value);
      return value;
    }
    return lookUpShared(name, depth);
  }

  private Value lookUpShared(String name, int depth) {
    Value known = shared.get(name);
    if (known != null) return known;
    String text = context.sharedExpression(name);
    if (text != null && openQueries.add(name)) {
      MQuery query = new MQuery(text, context, shared, openQueries, outerDepth + depth + 1);
      Value value = query.evaluate(0, query.tokens.size(), new Environment(null), 0);
      openQueries.remove(name);
      shared.put(name, value);
      return value;
    }
    Value value = new Value();
    value.connection = text == null ? context.dataSource(name) : null;
    return value;
  }

  /** A name, call, text, list or record, with what is picked from it behind. */
  private Value evaluateOperand(int begin, int end, Environment environment, int depth) {
    MTokens.Token token = tokens.get(begin);
    Value value = Value.UNKNOWN;
    int i = begin + 1;
    if (token.isName() && tokens.get(i).isSign('(') && i < end) {
      int close = closing(i, end);
      value = call(token.value(), arguments(i, close), environment, depth);
      i = close + 1;
    } else if (token.isName()) {
      value = lookUp(token.value(), environment, depth);
    } else if (token.kind() == MTokens.Kind.TEXT) {
      value = new Value();
      value.text = token.value();
    } else if (token.isSign('{') || token.isSign('[') || token.isSign('(')) {
      int close = closing(begin, end);
      value = token.isSign('(') ? evaluate(begin + 1, close, environment, depth + 1)
                                : collect(begin, close, environment, depth);
      i = close + 1;
    }
    while (i < end) {
      if (!tokens.get(i).isSign('{') && !tokens.get(i).isSign('[')) return Value.UNKNOWN;
      int close = closing(i, end);
      value = tokens.get(i).isSign('{') ? pickItem(value, i, close, environment, depth)
                                        : pickField(value, i, close);
      i = close + 1;
    }
    return value;
  }

  /** {a, b} as a list, [A = x, B = y] as a record. */
  private Value collect(int open, int close, Environment environment, int depth) {
    Value value = new Value();
    if (tokens.get(open).isSign('{')) {
      value.list = new ArrayList<>();
      for (int[] range : arguments(open, close))
        value.list.add(evaluate(range[0], range[1], environment, depth + 1));
    } else {
      value.record = new LinkedHashMap<>();
      for (int[] range : arguments(open, close)) {
        if (!tokens.get(range[0] + 1).isSign('=')) continue;
        value.record.put(
            tokens.get(range[0]).value(), evaluate(range[0] + 2, range[1], environment, depth + 1));
      }
    }
    return value;
  }

  /** Source{[Schema="dbo",Item="Sales"]}, Source{[Name="Sales"]} and the like. */
  private Value pickItem(Value value, int open, int close, Environment environment, int depth) {
    if (!tokens.get(open + 1).isSign('[')) return Value.UNKNOWN;
    Map<String, Value> key = collect(open + 1, closing(open + 1, close), environment, depth + 1).record;
    String item = text(key, "Item");
    String name = item != null ? item : text(key, "Name");
    if (name == null) return Value.UNKNOWN;
    Value picked = new Value();
    if (value.server != null) {
      picked.connection = context.connection(value.function, value.server, name);
      return picked;
    }
    if (value.connection == null) return Value.UNKNOWN;
    String schema = text(key, "Schema");
    boolean isSchema = "Schema".equals(text(key, "Kind"));
    if (isSchema || "Database".equals(text(key, "Kind"))) {
      picked.connection = value.connection;
      picked.schema = isSchema ? name : value.schema;
      return picked;
    }
    picked.relation =
        Relation.ofTable(
            Relation.Table.named(value.connection, schema != null ? schema : value.schema, name));
    return picked;
  }

  /** [Data] behind an item is the item's content; any other field is not followed. */
  private Value pickField(Value value, int open, int close) {
    boolean content = close == open + 2 && tokens.get(open + 1).isWord("Data");
    return content && (value.relation != null || value.connection != null) ? value : Value.UNKNOWN;
  }

  private static String text(Map<String, Value> record, String name) {
    return record != null && record.containsKey(name) ? record.get(name).text : null;
  }

  private Value call(String function, List<int[]> ranges, Environment environment, int depth) {
    List<Value> arguments = new ArrayList<>();
    for (int[] range : ranges) arguments.add(evaluate(range[0], range[1], environment, depth + 1));
    if (function.equals("Value.NativeQuery")) return nativeQuery(arguments);
    if (function.equals("Table.Combine")) return combine(arguments);
    if (function.startsWith("Table.") || function.startsWith("Value."))
      return transform(function, arguments, ranges);
    if (function.endsWith(".Database") || function.endsWith(".Databases")
        || function.equals("Odbc.DataSource")) {
      return connect(function, arguments);
    }
    return Value.UNKNOWN;
  }

  private Value connect(String function, List<Value> arguments) {
    String server = arguments.isEmpty() ? null : arguments.get(0).text;
    String database = arguments.size() < 2 ? null : arguments.get(1).text;
    if (server == null) return Value.UNKNOWN;
    Value value = new Value();
    if (function.endsWith(".Databases")) {
      value.server = server;
      value.function = function.substring(0, function.length() - 1);
      return value;
    }
    value.connection = context.connection(function, server, database == null ? "" : database);
    String query = arguments.isEmpty() ? null : text(arguments.get(arguments.size() - 1).record, "Query");
    return query == null ? value : Value.of(queryOf(value.connection, query));
  }

  /** The text goes into the model as it is: what it reads is found out there, as for every query. */
  private static Relation queryOf(String connection, String text) {
    return Relation.ofTable(Relation.Table.ofQuery(connection, text));
  }

  private static Value nativeQuery(List<Value> arguments) {
    if (arguments.size() < 2 || arguments.get(0).connection == null || arguments.get(1).text == null)
      return Value.UNKNOWN;
    return Value.of(queryOf(arguments.get(0).connection, arguments.get(1).text));
  }

  private static Value combine(List<Value> arguments) {
    List<Relation> parts = new ArrayList<>();
    if (arguments.isEmpty() || arguments.get(0).list == null) return Value.UNKNOWN;
    for (Value part : arguments.get(0).list) {
      if (part.relation == null) return Value.UNKNOWN;
      parts.add(part.relation);
    }
    return parts.isEmpty() ? Value.UNKNOWN : Value.of(Relation.append(parts));
  }

  private Value transform(String function, List<Value> arguments, List<int[]> ranges) {
    if (!SAME_COLUMNS.contains(function) || arguments.isEmpty() || arguments.get(0).relation == null)
      return Value.UNKNOWN;
    Value source = arguments.get(0);
    Relation relation = Relation.over(source.relation);
    Value result = Value.of(relation);
    result.nested = source.nested;
    switch (function) {
      case "Table.RenameColumns" -> rename(source.relation, relation, argument(arguments, 1));
      case "Table.AddColumn", "Table.AddIndexColumn" ->
        addColumn(source.relation, relation, arguments, ranges);
      case "Table.DuplicateColumn" -> {
        String old = argument(arguments, 1).text;
        String copy = argument(arguments, 2).text;
        if (old != null && copy != null) relation.put(copy, known(source.relation, old));
      }
      case "Table.NestedJoin" -> {
        String column = argument(arguments, 4).text;
        if (column == null || argument(arguments, 2).relation == null) break;
        result.nested = new HashMap<>(source.nested);
        result.nested.put(column, argument(arguments, 2).relation);
        relation.put(column, Set.of());
      }
      case "Table.ExpandTableColumn" -> expand(source, relation, arguments);
      default -> { }
    }
    return result;
  }

  private static Value argument(List<Value> arguments, int place) {
    return place < arguments.size() ? arguments.get(place) : Value.UNKNOWN;
  }

  private Set<Relation.Column> known(Relation relation, String column) {
    Set<Relation.Column> sources = relation.sourcesOf(column, budget);
    return sources == null ? Set.of() : sources;
  }

  /** {{"old", "new"}, ...}, or one pair alone. */
  private void rename(Relation from, Relation to, Value pairs) {
    if (pairs.list == null) return;
    boolean single = pairs.list.size() == 2 && pairs.list.get(0).text != null;
    List<Value> all = single ? List.of(pairs) : pairs.list;
    for (Value pair : all) {
      if (pair.list != null && pair.list.size() == 2 && pair.list.get(0).text != null)
        to.put(pair.list.get(0).text, Set.of());
    }
    for (Value pair : all) {
      if (pair.list == null || pair.list.size() != 2) continue;
      String old = pair.list.get(0).text;
      String name = pair.list.get(1).text;
      if (old != null && name != null) to.put(name, known(from, old));
    }
  }

  /** A new column is made of the fields that its function names: each [Price] * [Quantity]. */
  private void addColumn(Relation from, Relation to, List<Value> arguments, List<int[]> ranges) {
    String name = argument(arguments, 1).text;
    to.setComputed();
    if (name == null) return;
    Set<Relation.Column> sources = new LinkedHashSet<>();
    for (int i = ranges.size() > 2 ? ranges.get(2)[0] : 0; ranges.size() > 2 && i < ranges.get(2)[1]; ++i) {
      if (!tokens.get(i).isSign('[') || tokens.get(i + 2).isSign('=')) continue;
      int close = closing(i, ranges.get(2)[1]);
      StringBuilder field = new StringBuilder();
      for (int at = i + 1; at < close; ++at)
        field.append(at > i + 1 ? " " : "").append(tokens.get(at).value());
      sources.addAll(known(from, field.toString()));
      i = close;
    }
    to.put(name, sources);
  }

  private void expand(Value source, Relation relation, List<Value> arguments) {
    relation.setComputed();
    List<Value> columns = argument(arguments, 2).list;
    List<Value> names = arguments.size() > 3 ? arguments.get(3).list : columns;
    String column = argument(arguments, 1).text;
    Relation joined = column == null ? null : source.nested.get(column);
    if (columns == null || names == null || names.size() != columns.size()) return;
    for (int i = 0; i < columns.size(); ++i) {
      String old = columns.get(i).text;
      String name = names.get(i).text;
      if (old != null && name != null) relation.put(name, joined == null ? Set.of() : known(joined, old));
    }
  }

  private List<int[]> arguments(int open, int close) {
    List<int[]> ranges = new ArrayList<>();
    int start = open + 1;
    for (int i = open + 1; i <= close; i = after(i, close)) {
      if (i < close && !tokens.get(i).isSign(',')) continue;
      if (i > start) ranges.add(new int[] {start, i});
      start = i + 1;
    }
    return ranges;
  }

  private int find(int begin, int end, String word) {
    for (int i = begin; i < end; i = after(i, end)) {
      if (tokens.get(i).isWord(word)) return i;
    }
    return end;
  }

  private int findSign(int begin, int end, char sign) {
    for (int i = begin; i < end; i = after(i, end)) {
      if (tokens.get(i).isSign(sign)) return i;
    }
    return end;
  }

  /** The place behind a token, or behind all that a bracket or a let opens. */
  private int after(int i, int end) {
    if (i >= end) return i + 1;
    MTokens.Token token = tokens.get(i);
    boolean opens = token.isSign('(') || token.isSign('[') || token.isSign('{') || token.isWord("let");
    return opens ? Math.min(closing(i, end), end - 1) + 1 : i + 1;
  }

  private int closing(int open, int end) {
    int depth = 0;
    for (int i = open; i < end; ++i) {
      MTokens.Token token = tokens.get(i);
      if (token.isSign('(') || token.isSign('[') || token.isSign('{') || token.isWord("let")) ++depth;
      boolean closes = token.isSign(')') || token.isSign(']') || token.isSign('}') || token.isWord("in");
      if (closes && --depth == 0) return i;
    }
    return end;
  }
}

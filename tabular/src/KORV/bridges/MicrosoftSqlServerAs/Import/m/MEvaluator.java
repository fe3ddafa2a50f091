package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** Evaluates the queries of one model as far as their structure tells what columns come from. */
final class MEvaluator implements MEvaluation, MScope.Evaluation {
  /** Java's stack is what a chain of queries and calls is limited by; behind it values are unknown. */
  private static final int MAX_DEPTH = 900;

  /** A query's text, with the name that a shared expression has. */
  private record Text(String name, String text) {}

  private final MContext context;
  private final MQueries queries;
  private Budget budget = new Budget(0);
  private Text text = new Text("", "");
  private int depth;
  /** Whether a function was called that is not known, and whose rows may come from anywhere. */
  private boolean foreign;
  private boolean tooDeep;

  MEvaluator(MContext context) {
    this.context = context;
    queries = new MQueries(context);
  }

  @Override
  public MContext context() {
    return context;
  }

  @Override
  public Budget budget() {
    return budget;
  }

  /** The value of a partition's query, whose budget begins anew. */
  MValue evaluateQuery(String query) throws MSyntaxFault {
    budget = new Budget(query.length());
    depth = 0;
    foreign = false;
    tooDeep = false;
    text = new Text("", query);
    MNode tree = MParser.parse(query);
    queries.begin();
    queries.before(tree, this::evaluateShared);
    return evaluate(tree, MScope.inside(null));
  }

  /** Whether the query that was evaluated last may read something that it does not name. */
  boolean isForeign() { return foreign; }

  @Override
  public MFault fault(String cause, int at) {
    return new MFault(cause, text.name, text.text, at);
  }

  @Override
  public String written(MNode node) {
    return text.text.substring(node.at(), Math.max(node.at(), node.end()));
  }

  @Override
  public MValue evaluate(MNode node, MScope scope) {
    tooDeep |= depth >= MAX_DEPTH;
    if (depth >= MAX_DEPTH || !budget.take(1)) return MValue.UNKNOWN;
    ++depth;
    MValue value = switch (node.kind()) {
      case TEXT -> MValue.text(node.text());
      case NUMBER -> MValue.number(node.text());
      case LOGICAL -> MValue.logical(node.text().equals("true"));
      case NAME -> lookUp(node.text(), false, scope);
      case OWN_NAME -> lookUp(node.text(), true, scope);
      case LET -> let(node, scope);
      case RECORD -> record(node, scope);
      case LIST -> list(node, scope);
      case FUNCTION -> function(node, scope);
      case IF -> condition(node, scope);
      case TRY, CATCH -> attempt(node, scope);
      case OPERATION -> operation(node, scope);
      case ACCESS -> access(node, scope);
      case FIELD, COLUMNS -> ofRow(node, scope);
      case TYPE -> MValue.type(node.names());
      case NOTHING -> node.text().equals("null") ? MValue.NULL : MValue.UNKNOWN;
      case ITEM, ARGUMENTS, RANGE -> MValue.UNKNOWN;
    };
    --depth;
    return value;
  }

  private List<MValue> evaluateAll(List<MNode> nodes, MScope scope) {
    List<MValue> values = new ArrayList<>(nodes.size());
    for (MNode node : nodes) values.add(evaluate(node, scope));
    return values;
  }

  private MValue list(MNode node, MScope scope) {
    List<MValue> items = new ArrayList<>(node.items().size());
    for (MNode item : node.items()) {
      if (item.kind() != MNode.Kind.RANGE) {
        items.add(evaluate(item, scope));
        continue;
      }
      List<MValue> ends = evaluateAll(item.items(), scope);
      List<MValue> numbers = MOperators.range(ends.get(0), ends.get(1), budget);
      if (numbers == null) return MValue.repeated(either(ends, List.of()));
      items.addAll(numbers);
    }
    return MValue.list(items);
  }

  private MValue let(MNode node, MScope outer) {
    MScope scope = MScope.inside(outer);
    int steps = node.names().size();
    for (int i = 0; i < steps; ++i) scope.defer(node.names().get(i), node.items().get(i));
    // The steps are in an order in which nearly none has to wait for another.
    for (String name : node.names()) scope.find(name, false, this);
    return evaluate(node.items().get(steps), scope);
  }

  private MValue record(MNode node, MScope outer) {
    MScope scope = MScope.inside(outer);
    for (int i = 0; i < node.names().size(); ++i) scope.defer(node.names().get(i), node.items().get(i));
    Map<String, MValue> fields = new LinkedHashMap<>();
    for (String name : node.names()) fields.put(name, scope.find(name, false, this));
    return MValue.record(fields);
  }

  private MValue function(MNode node, MScope scope) {
    Text own = text;
    boolean[] running = new boolean[1];
    return MValue.function((arguments, call) -> {
      // A function that calls itself would be followed for as long as the budget lasts, and tell nothing.
      if (running[0]) return MValue.UNKNOWN;
      MScope inside = MScope.inside(scope);
      for (int i = 0; i < node.names().size(); ++i)
        inside.set(node.names().get(i), i < arguments.size() ? arguments.get(i) : MValue.UNKNOWN);
      Text caller = text;
      text = own;
      running[0] = true;
      MValue value = evaluate(node.items().get(0), inside);
      running[0] = false;
      text = caller;
      return value;
    });
  }

  private MValue condition(MNode node, MScope scope) {
    List<MNode> items = node.items();
    List<MValue> choices = new ArrayList<>();
    List<MValue> conditions = new ArrayList<>();
    for (int i = 0; i + 1 < items.size(); i += 2) {
      MValue condition = evaluate(items.get(i), scope);
      if (condition.is(MValue.Kind.LOGICAL) && condition.text.equals("false")) continue;
      choices.add(evaluate(items.get(i + 1), scope));
      if (condition.is(MValue.Kind.LOGICAL)) return either(choices, conditions);
      conditions.add(condition);
    }
    choices.add(evaluate(items.get(items.size() - 1), scope));
    return either(choices, conditions);
  }

  private MValue attempt(MNode node, MScope scope) {
    List<MValue> values = evaluateAll(node.items(), scope);
    MValue last = values.get(values.size() - 1);
    if (node.kind() == MNode.Kind.CATCH && last.is(MValue.Kind.FUNCTION))
      values.set(1, last.function.apply(List.of(MValue.UNKNOWN), node));
    if (values.size() > 1) return either(values, List.of());
    return MValue.record(new LinkedHashMap<>(Map.of("Value", values.get(0))));
  }

  @Override
  public MValue either(List<MValue> choices, List<MValue> conditions) {
    Set<Relation> tables = new LinkedHashSet<>();
    List<MValue> structured = new ArrayList<>();
    for (MValue choice : choices) {
      if (choice.is(MValue.Kind.TABLE)) tables.add(choice.relation);
      if (!choice.is(MValue.Kind.UNKNOWN)) structured.add(choice);
    }
    if (!tables.isEmpty()) {
      Relation relation = Relation.over(Relation.append(new ArrayList<>(tables)));
      relation.readAlso(origin(conditions));
      Set<Origin.Column> limits = union(conditions);
      if (!limits.isEmpty()) relation.limit(new Origin.Condition("", limits));
      return MValue.table(relation);
    }
    boolean same = choices.stream().allMatch(choice -> MOperators.same(choice, choices.get(0)));
    List<MValue> all = new ArrayList<>(conditions);
    all.addAll(choices);
    Set<Origin.Column> sources = union(all);
    if (same && union(conditions).isEmpty()) return choices.get(0);
    if (structured.size() == 1 && sources.equals(union(structured)) && !structured.get(0).isConstant())
      return structured.get(0);
    return MValue.of(sources, origin(all));
  }

  private MValue operation(MNode node, MScope scope) {
    List<MValue> values = evaluateAll(node.items(), scope);
    if (values.size() == 1) return MOperators.single(this, node.names().get(0), values.get(0));
    boolean joins = node.names().stream().allMatch(name -> name.equals("&"));
    if (joins) return MOperators.join(this, values, node.at());
    MValue value = values.get(0);
    for (int i = 1; i < values.size(); ++i) {
      MValue both = MOperators.apply(this, node.names().get(i - 1), value, values.get(i), node.at());
      // A long sum is one value of all its parts, not one of each further part.
      if (both == null) return mixed(values);
      value = both;
    }
    return value;
  }

  private MValue lookUp(String name, boolean own, MScope scope) {
    MValue value = scope.find(name, own, this);
    if (value != null) return value;
    value = query("shared expression", name, context.sharedExpression(name));
    if (value != null) return value;
    MSource source = context.dataSource(name);
    if (source != null) return MValue.source(source);
    value = query("table", name, context.tableQuery(name));
    if (value != null) return value;
    value = MFunctions.constant(name);
    if (value != null) return value;
    return MValue.function((arguments, call) -> call(name, arguments, call));
  }

  private MValue query(String kind, String name, String query) {
    return query == null ? null : valueOf(new MQueries.Query(kind, name, query));
  }

  private MValue valueOf(MQueries.Query query) {
    if (!queries.isKnown(query)) {
      if (queries.isOpen(query)) return MValue.UNKNOWN;
      queries.inOrder(query, this::evaluateShared);
    }
    foreign |= queries.isForeign(query);
    return queries.value(query);
  }

  private void evaluateShared(MQueries.Query query, MNode tree, MSyntaxFault fault) {
    budget.add(query.text().length());
    Text caller = text;
    boolean before = foreign;
    text = new Text(query.key(), query.text());
    foreign = fault != null;
    MValue value = fault == null
        ? evaluate(tree, MScope.inside(null))
        : MValue.table(Relation.opaque(List.of(), "").blame(fault(fault.getMessage(), fault.at)));
    text = caller;
    // What had to stop early is another value for another query.
    queries.set(query, value, foreign, !budget.isSpent() && !tooDeep);
    foreign = before;
  }

  private MValue call(String name, List<MValue> arguments, MNode written) {
    MFunctions.Function known = MFunctions.find(name);
    MCall call = new MCall(this, name, arguments, written);
    MValue value = known == null ? null : known.apply(call);
    if (value != null) return value;
    foreign |= known == null && !SourceFunctions.isLibrary(name);
    boolean rows = arguments.stream().anyMatch(MEvaluator::holdsRows);
    if (rows) return call.unknownColumns("is not known");
    List<MValue> all = new ArrayList<>(arguments);
    // What such a function calls its arguments with is one of the others, or made of them.
    MValue others = mixed(arguments);
    for (MValue argument : arguments) {
      if (argument.is(MValue.Kind.FUNCTION)) all.add(call.apply(argument, others, others));
    }
    return mixed(all);
  }

  private static boolean holdsRows(MValue value) {
    if (value.is(MValue.Kind.TABLE) || value.is(MValue.Kind.SOURCE)) return true;
    return value.is(MValue.Kind.LIST) && value.items.stream().anyMatch(item -> item.is(MValue.Kind.TABLE));
  }

  @Override
  public MValue unknownTable(List<MValue> arguments, MFault fault) {
    List<Relation> bases = new ArrayList<>();
    String connection = "";
    for (MValue argument : arguments) {
      if (argument.is(MValue.Kind.TABLE)) bases.add(argument.relation);
      if (argument.source != null) connection = argument.source.connection(context);
      for (MValue item : argument.items)
        if (item.is(MValue.Kind.TABLE)) bases.add(item.relation);
    }
    Relation relation = Relation.opaque(bases, connection).blame(fault);
    relation.readAlso(origin(arguments));
    return MValue.table(relation);
  }

  private MValue access(MNode node, MScope scope) {
    MValue value = evaluate(node.items().get(0), scope);
    for (int i = 1; i < node.items().size(); ++i) {
      MNode picked = node.items().get(i);
      value = switch (picked.kind()) {
        case ARGUMENTS -> invoke(value, evaluateAll(picked.items(), scope), picked);
        case ITEM -> MNavigation.item(this, value, evaluate(picked.items().get(0), scope), picked.at());
        default -> pick(value, picked);
      };
    }
    return value;
  }

  private MValue invoke(MValue function, List<MValue> arguments, MNode written) {
    if (function.is(MValue.Kind.FUNCTION)) return function.function.apply(arguments, written);
    return call("(computed function)", arguments, written);
  }

  private MValue pick(MValue value, MNode picked) {
    if (picked.kind() == MNode.Kind.FIELD) return MNavigation.field(this, value, picked.text());
    return MNavigation.columns(this, value, picked.names());
  }

  /** [A] and [[A], [B]] alone. */
  private MValue ofRow(MNode node, MScope scope) {
    String field = node.kind() == MNode.Kind.FIELD ? node.text() : node.names().get(0);
    MValue row = scope.rowWith(any -> canHave(any, field));
    return row == null ? MValue.UNKNOWN : pick(row, node);
  }

  /** Whether a value can have a field, as far as it is known. */
  private boolean canHave(MValue row, String field) {
    return switch (row.kind) {
      case RECORD ->
        row.fields.containsKey(field) || row.relation != null&& row.relation.find(field, budget) != null;
      case TABLE -> row.relation.find(field, budget) != null;
      case UNKNOWN -> true;
      default -> false;
    };
  }

  @Override
  public Set<Origin.Column> union(List<MValue> values) {
    Set<Origin.Column> all = new LinkedHashSet<>();
    Deque<MValue> waiting = new ArrayDeque<>(values);
    while (!waiting.isEmpty() && budget.take(1 + waiting.peek().sources.size())) {
      MValue value = waiting.pop();
      all.addAll(value.sources);
      waiting.addAll(value.items);
      waiting.addAll(value.fields.values());
      List<String> names =
          value.is(MValue.Kind.RECORD) && value.relation != null ? value.relation.names(budget) : null;
      if (names == null) continue;
      for (String name : names) waiting.add(MCall.cell(value.relation.find(name, budget)));
    }
    return all;
  }

  @Override
  public Origin origin(List<MValue> values) {
    Origin all = Origin.NONE;
    Set<MValue> seen = new HashSet<>();
    Deque<MValue> waiting = new ArrayDeque<>(values);
    while (!waiting.isEmpty() && budget.take(1)) {
      MValue value = waiting.pop();
      if (!seen.add(value)) continue;
      all = all.with(value.origin);
      if (value.is(MValue.Kind.TABLE)) all = all.with(value.relation.origin());
      waiting.addAll(value.items);
      waiting.addAll(value.fields.values());
    }
    return all;
  }

  /** Whether all was followed to its end. */
  boolean isComplete() { return !budget.isSpent() && !tooDeep; }
}

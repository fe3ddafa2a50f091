package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashMap;
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
  /** Shared expressions by name, each evaluated once for all queries of a model. */
  private final Map<String, MValue> shared = new HashMap<>();
  private final Set<String> openQueries = new HashSet<>();
  private Relation.Budget budget = new Relation.Budget(0);
  private Text text = new Text("", "");
  private int depth;
  /** Whether a function was called that is not known, and whose rows may come from anywhere. */
  private boolean foreign;
  private final Set<String> foreignQueries = new HashSet<>();

  MEvaluator(MContext context) { this.context = context; }

  @Override
  public MContext context() {
    return context;
  }

  @Override
  public Relation.Budget budget() {
    return budget;
  }

  /** The value of a partition's query, whose budget begins anew. */
  MValue evaluateQuery(String query) throws MSyntaxFault {
    budget = new Relation.Budget(query.length());
    depth = 0;
    foreign = false;
    text = new Text("", query);
    return evaluate(MParser.parse(query), MScope.inside(null));
  }

  /** Whether the query that was evaluated last may read something that it does not name. */
  boolean isForeign() {
    return foreign;
  }

  @Override
  public MFault fault(String cause, int at) {
    return MFault.at(cause, text.name, text.text, at);
  }

  @Override
  public MValue evaluate(MNode node, MScope scope) {
    if (depth >= MAX_DEPTH || !budget.take(1)) return MValue.UNKNOWN;
    ++depth;
    MValue value = switch (node.kind()) {
      case TEXT -> MValue.text(node.text());
      case NUMBER -> MValue.number(node.text());
      case LOGICAL -> MValue.logical(node.text().equals("true"));
      case NAME -> lookUp(node.text(), scope);
      case LET -> let(node, scope);
      case RECORD -> record(node, scope);
      case LIST -> MValue.list(evaluateAll(node.items(), scope));
      case FUNCTION -> function(node, scope);
      case IF -> condition(node, scope);
      case TRY -> attempt(node, scope);
      case OPERATION -> operation(node, scope);
      case ACCESS -> access(node, scope);
      case FIELD, COLUMNS -> ofRow(node, scope);
      case TYPE -> MValue.type(node.names());
      case NOTHING -> node.text().equals("null") ? MValue.NULL : MValue.UNKNOWN;
        case ITEM, ARGUMENTS -> MValue.UNKNOWN;
    };
    --depth;
    return value;
  }

  private List<MValue> evaluateAll(List<MNode> nodes, MScope scope) {
    List<MValue> values = new ArrayList<>(nodes.size());
    for (MNode node : nodes) values.add(evaluate(node, scope));
        return values;
    }

    private MValue let(MNode node, MScope outer) {
      MScope scope = MScope.inside(outer);
      int steps = node.names().size();
      // Each has a value from the beginning, so that steps that name each other find an end.
      for (String name : node.names()) scope.set(name, MValue.UNKNOWN);
      for (int i = 0; i < steps; ++i) {
        String name = node.names().get(i);
        scope.set(name, evaluate(node.items().get(i), scope.forValueOf(name)));
      }
      return evaluate(node.items().get(steps), scope);
    }

    private MValue record(MNode node, MScope outer) {
      MScope scope = MScope.inside(outer);
      for (int i = 0; i < node.names().size(); ++i) scope.defer(node.names().get(i), node.items().get(i));
      Map<String, MValue> fields = new LinkedHashMap<>();
      for (String name : node.names()) fields.put(name, scope.find(name, this));
      return MValue.record(fields);
    }

    private MValue function(MNode node, MScope scope) {
      Text own = text;
      boolean[] running = new boolean[1];
      return MValue.function((arguments, at) -> {
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
      if (!tables.isEmpty()) return MValue.table(Relation.append(new ArrayList<>(tables)));
      boolean same = choices.stream().allMatch(choice -> MOperators.same(choice, choices.get(0)));
      List<MValue> all = new ArrayList<>(conditions);
      all.addAll(choices);
      Set<Relation.Column> sources = union(all);
      if (same && union(conditions).isEmpty()) return choices.get(0);
      if (structured.size() == 1 && sources.equals(union(structured)) && !structured.get(0).isConstant())
        return structured.get(0);
      return MValue.of(sources);
    }

    private MValue operation(MNode node, MScope scope) {
      List<MValue> parts = new ArrayList<>();
      MValue value = evaluate(node.items().get(0), scope);
      for (int i = 1; i < node.items().size(); ++i) {
        MValue next = evaluate(node.items().get(i), scope);
        MValue both = MOperators.apply(this, node.names().get(i - 1), value, next, node.at());
        if (both == null) parts.add(value);
        value = both == null ? next : both;
      }
      if (parts.isEmpty() && node.items().size() > 1) return value;
      parts.add(value);
      return MValue.of(union(parts));
    }

    private MValue lookUp(String name, MScope scope) {
      MValue value = scope.find(name, this);
      if (value != null) return value;
      value = shared(name);
      if (value != null) return value;
      MSource source = context.dataSource(name);
      if (source != null) return MValue.source(source);
      return MValue.function((arguments, at) -> call(name, arguments, at));
    }

    private MValue shared(String name) {
      MValue known = shared.get(name);
      if (known != null) {
        foreign |= foreignQueries.contains(name);
        return known;
      }
      String query = context.sharedExpression(name);
      if (query == null) return null;
      if (!openQueries.add(name)) return MValue.UNKNOWN;
      budget.add(query.length());
      Text caller = text;
      boolean before = foreign;
      foreign = false;
      text = new Text(name, query);
      MValue value = MValue.UNKNOWN;
      try {
        value = evaluate(MParser.parse(query), MScope.inside(null));
      } catch (MSyntaxFault fault) {
        value = MValue.table(Relation.opaque(List.of(), "").blame(fault(fault.getMessage(), fault.at)));
      }
      text = caller;
      if (foreign) foreignQueries.add(name);
      foreign |= before;
      openQueries.remove(name);
      shared.put(name, value);
      return value;
    }

    private MValue call(String name, List<MValue> arguments, int at) {
      MFunctions.Function known = MFunctions.find(name);
      MCall call = new MCall(this, name, arguments, at);
      MValue value = known == null ? null : known.apply(call);
      if (value != null) return value;
      boolean rows = arguments.stream().anyMatch(MEvaluator::holdsRows);
      if (rows) return call.unknownColumns("is not known");
      foreign |= known == null && !SourceFunctions.isLibrary(name);
      List<MValue> all = new ArrayList<>(arguments);
      // What such a function calls its arguments with is one of the others, or made of them.
      MValue others = MValue.of(union(arguments));
      for (MValue argument : arguments) {
        if (argument.is(MValue.Kind.FUNCTION)) all.add(call.apply(argument, others, others));
      }
      return MValue.of(union(all));
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
      return MValue.table(Relation.opaque(bases, connection).blame(fault));
    }

    private MValue access(MNode node, MScope scope) {
      MValue value = evaluate(node.items().get(0), scope);
      for (int i = 1; i < node.items().size(); ++i) {
        MNode picked = node.items().get(i);
        value = switch (picked.kind()) {
        case ARGUMENTS -> invoke(value, evaluateAll(picked.items(), scope), node.at());
        case ITEM -> MNavigation.item(this, value, evaluate(picked.items().get(0), scope), picked.at());
        default -> pick(value, picked);
      };
    }
    return value;
  }

  private MValue invoke(MValue function, List<MValue> arguments, int at) {
    if (function.is(MValue.Kind.FUNCTION)) return function.function.apply(arguments, at);
    return call("(computed function)", arguments, at);
  }

  private MValue pick(MValue value, MNode picked) {
    if (picked.kind() == MNode.Kind.FIELD) return MNavigation.field(this, value, picked.text());
    return MNavigation.columns(value, picked.names());
  }

  /** [A] and [[A], [B]] alone. */
  private MValue ofRow(MNode node, MScope scope) {
    String field = node.kind() == MNode.Kind.FIELD ? node.text() :
          node.names().get(0);
          MValue row = scope.rowWith(any -> canHave(any, field));
          return row == null ? MValue.UNKNOWN : pick(row, node);
        }

        /** Whether a value can have a field, as far as it is known. */
        private boolean canHave(MValue row, String field) {
          return switch (row.kind) {
      case RECORD -> row.fields.containsKey(field)
          || row.relation != null && row.relation.find(field, budget) != null;
      case TABLE -> row.relation.find(field, budget) != null;
      case UNKNOWN -> true;
      default -> false;
    };
  }

  @Override
  public Set<Relation.Column> union(List<MValue> values) {
    Set<Relation.Column> all = new LinkedHashSet<>();
    Deque<MValue> waiting = new ArrayDeque<>(values);
    while (!waiting.isEmpty() && budget.take(1 + waiting.peek().sources.size())) {
      MValue value = waiting.pop();
      all.addAll(value.sources);
      waiting.addAll(value.items);
      waiting.addAll(value.fields.values());
    }
    return all;
  }
}

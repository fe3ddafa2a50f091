package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashMap;
import java.util.HashSet;
import java.util.Iterator;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * The shared expressions of a model, and the queries of its tables, each evaluated once. Those that a query
 * names are evaluated before it, so that a chain of queries is no deep chain of calls.
 */
final class MQueries {
  /** A query that others can name. */
  record Query(String kind, String name, String text) {
    String key() {
      return kind + " '" + name + "'";
    }
  }

  /** Gives a query its value; `tree` is null where the text has a fault. */
  interface Evaluation {
    void evaluate(Query query, MNode tree, MSyntaxFault fault);
  }

  private record Known(MValue value, boolean foreign) {}

  /** A query that waits for those that it names. */
  private record Open(Query query, MNode tree, MSyntaxFault fault, Iterator<Query> named) {}

  private final MContext context;
  private final Map<String, Known> known = new HashMap<>();
  /** Values of the query that is being read, which another one may find otherwise. */
  private final Map<String, Known> passing = new HashMap<>();
  private final Set<String> open = new HashSet<>();

  MQueries(MContext context) { this.context = context; }

  /** Another query begins, with a budget of its own. */
  void begin() { passing.clear(); }

  boolean isKnown(Query query) { return find(query) != null; }

  private Known find(Query query) {
    Known value = known.get(query.key());
    return value != null ? value : passing.get(query.key());
  }

  /** Whether the query is being evaluated, or waits for those that it names. */
  boolean isOpen(Query query) { return open.contains(query.key()); }

  MValue value(Query query) { return find(query).value; }

  boolean isForeign(Query query) { return find(query).foreign; }

  void set(Query query, MValue value, boolean foreign, boolean complete) {
    (complete ? known : passing).put(query.key(), new Known(value, foreign));
  }

  /** Evaluates the queries that a tree names. */
  void before(MNode tree, Evaluation evaluation) {
    for (Query query : named(tree))
      if (!isKnown(query) && !isOpen(query)) inOrder(query, evaluation);
  }

  /** Evaluates a query, and before it those that it names. */
  void inOrder(Query first, Evaluation evaluation) {
    Deque<Open> waiting = new ArrayDeque<>(List.of(opened(first)));
    while (!waiting.isEmpty()) {
      Open at = waiting.peek();
      if (at.named.hasNext()) {
        Query next = at.named.next();
        if (!isKnown(next) && !isOpen(next)) waiting.push(opened(next));
        continue;
      }
      evaluation.evaluate(at.query, at.tree, at.fault);
      open.remove(at.query.key());
      waiting.pop();
    }
  }

  private Open opened(Query query) {
    open.add(query.key());
    try {
      MNode tree = MParser.parse(query.text);
      return new Open(query, tree, null, named(tree).iterator());
    } catch (MSyntaxFault fault) {
      return new Open(query, null, fault, List.<Query>of().iterator());
    }
  }

  /** What the names of a tree may mean: one of a step only costs that a query is evaluated early. */
  private List<Query> named(MNode tree) {
    List<Query> queries = new ArrayList<>();
    Set<String> seen = new HashSet<>();
    Deque<MNode> waiting = new ArrayDeque<>(List.of(tree));
    while (!waiting.isEmpty()) {
      MNode node = waiting.pop();
      for (int i = node.items().size() - 1; i >= 0; --i) waiting.push(node.items().get(i));
      boolean name = node.kind() == MNode.Kind.NAME || node.kind() == MNode.Kind.OWN_NAME;
      if (!name || !seen.add(node.text())) continue;
      Query query = find(node.text());
      if (query != null) queries.add(query);
    }
    return queries;
  }

  private Query find(String name) {
    String text = context.sharedExpression(name);
    if (text != null) return new Query("shared expression", name, text);
    text = context.dataSource(name) == null ? context.tableQuery(name) : null;
    return text == null ? null : new Query("table", name, text);
  }
}

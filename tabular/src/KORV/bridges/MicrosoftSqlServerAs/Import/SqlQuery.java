package KORV.bridges.MicrosoftSqlServerAs.Import;

import java.util.ArrayList;
import java.util.HashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Reads where the columns of an SQL query come from. What it does not understand gives no lineage rather than
 * a guess.
 */
final class SqlQuery {
  /** Queries inside queries; each level is a call. */
  private static final int MAX_DEPTH = 100;

  private static final Set<String> CLAUSES = Set.of("where", "group", "having", "order", "union", "except",
      "intersect", "option", "for", "window", "limit", "offset", "fetch", "qualify");
  private static final Set<String> SET_OPERATORS = Set.of("union", "except", "intersect");
  private static final Set<String> AFTER_TABLE = Set.of("on", "with", "left", "right", "inner", "full",
      "cross", "outer", "natural", "using", "join", "apply", "pivot", "unpivot", "tablesample", "where",
      "group", "order", "having", "union", "hash", "loop", "merge");
  /** Words of expressions that are no column names. */
  private static final Set<String> OPERATORS =
      Set.of("case", "when", "then", "else", "end", "and", "or", "not", "null", "is", "in", "like", "between",
          "as", "over", "partition", "by", "order", "asc", "desc", "rows", "range", "unbounded", "preceding",
          "following", "current", "row", "exists", "all", "any", "some", "distinct", "escape", "within",
          "group", "true", "false", "from", "top", "percent", "select", "where", "with", "ties");
  /** Functions whose first argument is a date part or a type. */
  private static final Set<String> WORD_FIRST = Set.of("datepart", "datename", "dateadd", "datediff",
      "datediff_big", "datetrunc", "convert", "try_convert", "extract");

  private final SqlTokens tokens;
  private final String connection;

  private record Scope(Map<String, Relation> byAlias, List<Relation> relations, Scope outer) {}

  private SqlQuery(String text, String connection) {
    tokens = new SqlTokens(text);
    this.connection = connection;
  }

  /** What a query reads through a connection; null when it is no query that can be understood. */
  static Relation read(String text, String connection) {
    SqlQuery query = new SqlQuery(text, connection);
    int end = query.tokens.size();
    while (end > 0 && query.tokens.get(end - 1).isSign(';')) --end;
    return query.readQuery(0, end, Map.of(), null, 0);
  }

  private Relation readQuery(int begin, int end, Map<String, Relation> outerNames, Scope outer, int depth) {
    if (depth > MAX_DEPTH) return null;
    Map<String, Relation> names = outerNames;
    if (tokens.get(begin).isKeyword("WITH")) {
      names = new HashMap<>(outerNames);
      begin = readCommonTables(begin + 1, end, names, depth);
      if (begin < 0) return null;
    }
    List<Relation> parts = new ArrayList<>();
    int start = begin;
    for (int i = begin; i <= end; i = after(i, end)) {
      if (i < end && !isOneOf(i, SET_OPERATORS)) continue;
      Relation part = readSelect(start, i, names, outer, depth);
      if (part == null) return null;
      parts.add(part);
      start = tokens.get(i + 1).isKeyword("ALL") ? i + 2 : i + 1;
    }
    if (parts.isEmpty()) return null;
    return parts.size() == 1 ? parts.get(0) : combine(parts);
  }

  /** A UNION has the first part's names; its columns belong together by place where all are listed. */
  private static Relation combine(List<Relation> parts) {
    Relation union = Relation.append(parts);
    List<List<Relation.Output>> columns = new ArrayList<>();
    for (Relation part : parts) {
      List<Relation.Output> listed = new ArrayList<>();
      part.outputs().forEach(listed::add);
      if (listed.size() != parts.get(0).outputCount() || listed.isEmpty()) return union;
      columns.add(listed);
    }
    for (int i = 0; i < columns.get(0).size(); ++i) {
      Set<Relation.Column> sources = new LinkedHashSet<>();
      for (List<Relation.Output> listed : columns) sources.addAll(listed.get(i).sources());
      union.put(columns.get(0).get(i).name(), sources);
    }
    return union;
  }

  /** name [(columns)] AS (query), ...; gives the place behind them, or -1. */
  private int readCommonTables(int i, int end, Map<String, Relation> names, int depth) {
    while (true) {
      String name = tokens.get(i++).value();
      List<String> columns = new ArrayList<>();
      if (tokens.get(i).isSign('(')) i = readColumnList(i, end, columns);
      if (!tokens.get(i).isKeyword("AS") || !tokens.get(i + 1).isSign('(')) return -1;
      int close = closing(i + 1, end);
      Relation query = readQuery(i + 2, close, names, null, depth + 1);
      if (query != null) names.put(Names.fold(name), renamed(query, columns));
      i = close + 1;
      if (!tokens.get(i).isSign(',')) return i;
      ++i;
    }
  }

  private int readColumnList(int open, int end, List<String> columns) {
    int close = closing(open, end);
    for (int i = open + 1; i < close; ++i) {
      if (tokens.get(i).isName()) columns.add(tokens.get(i).value());
    }
    return close + 1;
  }

  private static Relation renamed(Relation query, List<String> columns) {
    if (columns.isEmpty() || columns.size() != query.outputCount()) return query;
    Relation renamed = Relation.over(List.of());
    if (!query.isPlain()) renamed.setComputed();
    int i = 0;
    for (Relation.Output output : query.outputs()) renamed.put(columns.get(i++), output.sources());
    return renamed;
  }

  private Relation readSelect(int begin, int end, Map<String, Relation> names, Scope outer, int depth) {
    if (tokens.get(begin).isSign('(') && closing(begin, end) < end) {
      return readQuery(begin + 1, closing(begin, end), names, outer, depth + 1);
    }
    if (!tokens.get(begin).isKeyword("SELECT")) return null;
    int items = skipQuantifiers(begin + 1, end);
    int from = find(items, end, Set.of("from"));
    int into = find(items, from, Set.of("into"));
    int clauses = find(Math.min(from + 1, end), end, CLAUSES);
    Scope scope = readFrom(Math.min(from + 1, end), clauses, names, outer, depth);
    if (scope == null) return null;
    List<Relation> whole = new ArrayList<>();
    List<Relation.Output> outputs = new ArrayList<>();
    boolean computed = false;
    int item = items;
    for (int i = items; i <= into; i = after(i, into)) {
      if (i < into && !tokens.get(i).isSign(',')) continue;
      if (!readWhole(item, i, scope, whole)) computed |= readItem(item, i, scope, names, outputs, depth);
      item = i + 1;
    }
    Relation relation = Relation.over(whole);
    for (Relation.Output output : outputs) relation.put(output.name(), output.sources());
    if (computed || !outputs.isEmpty() || scope.relations.size() > 1) relation.setComputed();
    return relation;
  }

  private int skipQuantifiers(int i, int end) {
    while (tokens.get(i).isKeyword("DISTINCT") || tokens.get(i).isKeyword("ALL")) ++i;
    if (tokens.get(i).isKeyword("TOP")) {
      i = after(i + 1, end);
      if (tokens.get(i).isKeyword("PERCENT")) ++i;
      if (tokens.get(i).isKeyword("WITH") && tokens.get(i + 1).isKeyword("TIES")) i += 2;
    }
    return i;
  }

  /** `*` or `name.*`: all columns of all tables or of one. */
  private boolean readWhole(int begin, int end, Scope scope, List<Relation> whole) {
    if (end <= begin || !tokens.get(end - 1).isSign('*')) return false;
    if (end == begin + 1) {
      whole.addAll(scope.relations);
      return true;
    }
    if (!tokens.get(end - 2).isSign('.')) return false;
    Relation relation = scope.byAlias.get(Names.fold(tokens.get(end - 3).value()));
    if (relation != null) whole.add(relation);
    return true;
  }

  /** One item of the select list; says whether it is more than a column under another name. */
  private boolean readItem(int begin, int end, Scope scope, Map<String, Relation> names,
      List<Relation.Output> outputs, int depth) {
    if (end <= begin) return false;
    String name = "";
    int last = end;
    if (tokens.get(begin).isName() && tokens.get(begin + 1).isSign('=')) {
      name = tokens.get(begin).value();
      begin += 2;
    } else if (end - begin >= 3 && tokens.get(end - 2).isKeyword("AS")) {
      name = tokens.get(end - 1).value();
      last = end - 2;
    } else if (end - begin >= 2 && isAlias(end - 1)) {
      name = tokens.get(end - 1).value();
      last = end - 1;
    } else if (tokens.get(end - 1).isName()) {
      name = tokens.get(end - 1).value();
    }
    Set<Relation.Column> sources = new LinkedHashSet<>();
    boolean single = readReferences(begin, last, scope, names, sources, depth);
    outputs.add(new Relation.Output(name, sources));
    return !single;
  }

  /** A name behind something that ends an operand. */
  private boolean isAlias(int place) {
    QueryTokens.Token token = tokens.get(place);
    if (!token.isName() && token.kind() != QueryTokens.Kind.TEXT || token.isKeyword("END")) return false;
    QueryTokens.Token before = tokens.get(place - 1);
    if (before.isSign(')') || before.isKeyword("END") || before.isKeyword("NULL")) return true;
    boolean operand =
        before.isName() || before.kind() == QueryTokens.Kind.NUMBER || before.kind() == QueryTokens.Kind.TEXT;
    return operand
        && !(before.kind() == QueryTokens.Kind.WORD && OPERATORS.contains(Names.fold(before.value())));
  }

  /** Collects the columns that an expression names; true when it is one column and nothing else. */
  private boolean readReferences(
      int begin, int end, Scope scope, Map<String, Relation> names, Set<Relation.Column> sources, int depth) {
    boolean single = false;
    for (int i = begin; i < end; ++i) {
      QueryTokens.Token token = tokens.get(i);
      if (token.isSign('(') && (tokens.get(i + 1).isKeyword("SELECT") || tokens.get(i + 1).isKeyword("WITH"))) {
        int close = closing(i, end);
        Relation query = readQuery(i + 1, close, names, scope, depth + 1);
        if (query != null) query.outputs().forEach(output -> sources.addAll(output.sources()));
        i = close;
      } else if (token.isKeyword("COLLATE")) {
        ++i;
      } else if (token.isKeyword("AT") && tokens.get(i + 1).isKeyword("TIME")) {
        i += 2;
      } else if (token.isKeyword("AS")) {
        i = skipType(i + 1);
      } else if (token.isName() && !isOperator(token)) {
        int last = i;
        while (tokens.get(last + 1).isSign('.') && tokens.get(last + 2).isName()) last += 2;
        if (tokens.get(last + 1).isSign('(')) {
          i = WORD_FIRST.contains(Names.fold(tokens.get(last).value())) ? skipFirstArgument(last + 2) : last;
        } else {
          addColumn(i, last, scope, sources);
          single = i == begin && last == end - 1;
          i = last;
        }
      }
    }
    return single;
  }

  private static boolean isOperator(QueryTokens.Token token) {
    return token.kind() == QueryTokens.Kind.WORD
        && (OPERATORS.contains(Names.fold(token.value())) || token.value().startsWith("@"));
  }

  /** The type in CAST(x AS decimal(18, 2)): the place of its name. */
  private int skipType(int i) {
    while (tokens.get(i + 1).isSign('.') && tokens.get(i + 2).isName()) i += 2;
    return i;
  }

  /** A bare word as first argument names a date part or a type. */
  private int skipFirstArgument(int i) {
    boolean bare = tokens.get(i).isName() && !tokens.get(i + 1).isSign('.');
    return bare ? i : i - 1;
  }

  private void addColumn(int first, int last, Scope scope, Set<Relation.Column> sources) {
    String column = tokens.get(last).value();
    for (Scope at = scope; at != null; at = at.outer) {
      Set<Relation.Column> found = null;
      if (first < last) {
        Relation relation = at.byAlias.get(Names.fold(tokens.get(last - 2).value()));
        if (relation != null) found = relation.sourcesOf(column);
      } else {
        found = Relation.over(at.relations).sourcesOf(column);
      }
      if (found == null) continue;
      sources.addAll(found);
      return;
    }
  }

  private Scope readFrom(int begin, int end, Map<String, Relation> names, Scope outer, int depth) {
    Scope scope = new Scope(new HashMap<>(), new ArrayList<>(), outer);
    int piece = begin;
    for (int i = begin; i <= end && begin < end; i = after(i, end)) {
      boolean separator =
          tokens.get(i).isSign(',') || tokens.get(i).isKeyword("JOIN") || tokens.get(i).isKeyword("APPLY");
      if (i < end && (tokens.get(i).isKeyword("PIVOT") || tokens.get(i).isKeyword("UNPIVOT"))) return null;
      if (i < end && !separator) continue;
      if (!readTable(piece, i, scope, names, depth)) return null;
      piece = i + 1;
    }
    return scope;
  }

  /**
   * A table, a query or a join in parentheses, with its alias; what follows it (ON ...) is of no interest.
   */
  private boolean readTable(int begin, int end, Scope scope, Map<String, Relation> names, int depth) {
    if (depth > MAX_DEPTH) return false;
    if (tokens.get(begin).isSign('(')) {
      int close = closing(begin, end);
      boolean query = tokens.get(begin + 1).isKeyword("SELECT") || tokens.get(begin + 1).isKeyword("WITH")
          || tokens.get(begin + 1).isSign('(');
      if (!query) return readJoin(begin + 1, close, scope, names, depth);
      Relation relation = readQuery(begin + 1, close, names, scope.outer, depth + 1);
      return relation != null && addTable(relation, "", close + 1, end, scope);
    }
    int last = begin;
    if (!tokens.get(begin).isName()) return false;
    while (tokens.get(last + 1).isSign('.')) {
      last += tokens.get(last + 2).isName() ? 2 : 1;
    }
    if (tokens.get(last + 1).isSign('(') || tokens.get(begin).value().startsWith("@")) {
      // A function's rows have columns that nothing here tells.
      int close = tokens.get(last + 1).isSign('(') ? closing(last + 1, end) : last;
      return addTable(Relation.over(List.of()), "", close + 1, end, scope);
    }
    String name = tokens.get(last).value();
    Relation common = begin == last ? names.get(Names.fold(name)) : null;
    String schema = last > begin && tokens.get(last - 2).isName() ? tokens.get(last - 2).value() : "";
    Relation relation =
        common != null ? common : Relation.ofTable(new Relation.Table(connection, schema, name));
    return addTable(relation, name, last + 1, end, scope);
  }

  private boolean readJoin(int begin, int end, Scope scope, Map<String, Relation> names, int depth) {
    Scope inner = readFrom(begin, end, names, scope.outer, depth + 1);
    if (inner == null) return false;
    scope.relations.addAll(inner.relations);
    inner.byAlias.forEach(scope.byAlias::putIfAbsent);
    return true;
  }

  private boolean addTable(Relation relation, String name, int i, int end, Scope scope) {
    if (tokens.get(i).isKeyword("AS")) ++i;
    if (i < end && tokens.get(i).isName() && !isOneOf(i, AFTER_TABLE)) {
      name = tokens.get(i++).value();
      List<String> columns = new ArrayList<>();
      if (i < end && tokens.get(i).isSign('(')) readColumnList(i, end, columns);
      relation = renamed(relation, columns);
    }
    scope.relations.add(relation);
    scope.byAlias.putIfAbsent(Names.fold(name), relation);
    return true;
  }

  private boolean isOneOf(int place, Set<String> words) {
    return tokens.get(place).kind() == QueryTokens.Kind.WORD
        && words.contains(Names.fold(tokens.get(place).value()));
  }

  /** The first of some words outside parentheses, or `end`. */
  private int find(int begin, int end, Set<String> words) {
    for (int i = begin; i < end; i = after(i, end)) {
      if (isOneOf(i, words)) return i;
    }
    return end;
  }

  /** The place behind a token, or behind all that a parenthesis opens. */
  private int after(int i, int end) {
    if (i >= end) return i + 1;
    return tokens.get(i).isSign('(') ? Math.min(closing(i, end), end - 1) + 1 : i + 1;
  }

  private int closing(int open, int end) {
    int depth = 0;
    for (int i = open; i < end; ++i) {
      if (tokens.get(i).isSign('(')) ++depth;
      if (tokens.get(i).isSign(')') && --depth == 0) return i;
    }
    return end;
  }
}

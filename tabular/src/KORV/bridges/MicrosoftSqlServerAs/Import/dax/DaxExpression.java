package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** A DAX expression taken apart: the names that it uses, its variables and the columns that it makes. */
public final class DaxExpression {
  /** `table` is null for [Name]; `column` is null for a table alone. `written` is the text for messages. */
  public record Reference(String table, String column, int place) {
    String written() {
      String quoted = table == null ? "" : "'" + table.replace("'", "''") + "'";
      return column == null ? quoted : quoted + "[" + column.replace("]", "]]") + "]";
    }
  }

  /** A range of tokens, the end not included. */
  record Range(int begin, int end) {}

  /** Words that cannot be the table in front of a bracket. */
  private static final Set<String> KEYWORDS = Set.of("return", "in", "not", "var", "evaluate", "define",
      "measure", "order", "by", "asc", "desc", "and", "or");

  public final String fault;
  final List<Reference> references = new ArrayList<>();
  /** The tables that references name, folded. */
  final Set<String> usedTables = new LinkedHashSet<>();
  /** Names of the functions that are called, folded. */
  final List<String> calls = new ArrayList<>();
  private final DaxTokens tokens;
  private final Map<String, List<Range>> variables = new HashMap<>();
  private final Map<String, List<Integer>> texts = new HashMap<>();
  private final Set<String> parameters = new HashSet<>();
  private boolean hasConstructor;

  public DaxExpression(String text) {
    tokens = DaxTokens.of(text);
    fault = tokens.fault();
    readParameters();
    readVariables();
    for (int i = 0; i < tokens.size(); ++i) i = readReference(i);
    for (Reference reference : references) {
      if (reference.table != null) usedTables.add(Names.fold(reference.table));
    }
  }

  /** Whether the expression itself makes a column of this name, so that [name] can mean that one. */
  boolean makesColumn(String name) {
    String folded = Names.fold(name);
    if (texts.containsKey(folded)) return true;
    if (folded.equals("date")) return calls.contains("calendar") || calls.contains("calendarauto");
    return folded.matches("value\\d*") && (hasConstructor || calls.contains("generateseries"));
  }

  boolean isLocalName(String name) {
    String folded = Names.fold(name);
    return variables.containsKey(folded) || parameters.contains(folded);
  }

  /**
   * The references that stand in what the expression gives a column of its result: behind the text with the
   * column's name, variables followed to their own. Null when no text has the name.
   */
  public List<Reference> referencesOf(String column) {
    List<Integer> places = texts.get(Names.fold(column));
    if (places == null) return null;
    List<Range> waiting = new ArrayList<>();
    for (int place : places) {
      if (tokens.get(place + 1).isSign(',')) waiting.add(argument(place + 2));
    }
    if (waiting.isEmpty()) return null;
    Set<Range> ranges = new HashSet<>(waiting);
    for (int i = 0; i < waiting.size(); ++i) {
      for (int at = waiting.get(i).begin; at < waiting.get(i).end; ++at) {
        if (tokens.get(at).kind() != DaxTokens.Kind.WORD) continue;
        for (Range range : variables.getOrDefault(Names.fold(tokens.get(at).value()), List.of())) {
          if (ranges.add(range)) waiting.add(range);
        }
      }
    }
    Set<Reference> found = new LinkedHashSet<>();
    for (Range range : waiting) {
      for (int i = firstReference(range.begin); i < references.size() && references.get(i).place < range.end;
           ++i) {
        found.add(references.get(i));
      }
    }
    return new ArrayList<>(found);
  }

  /** The index of the first reference at or behind a place. */
  private int firstReference(int place) {
    int low = 0;
    int high = references.size();
    while (low < high) {
      int middle = (low + high) / 2;
      if (references.get(middle).place < place) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }

  /** From `begin` to the comma or closing sign that ends the argument. */
  private Range argument(int begin) {
    int depth = 0;
    int end = begin;
    for (; end < tokens.size(); ++end) {
      DaxTokens.Token token = tokens.get(end);
      if (token.isSign('(') || token.isSign('{')) ++depth;
      if ((token.isSign(')') || token.isSign('}')) && --depth < 0) break;
      if (depth == 0 && token.isSign(',')) break;
    }
    return new Range(begin, end);
  }

  /** The names in "( a : type, b ) =>", the head of a user function. */
  private void readParameters() {
    if (!tokens.get(0).isSign('(')) return;
    int end = 1;
    int depth = 1;
    for (; end < tokens.size() && depth > 0; ++end) {
      if (tokens.get(end).isSign('(')) ++depth;
      if (tokens.get(end).isSign(')')) --depth;
    }
    if (!tokens.get(end).isSign('=') || !tokens.get(end + 1).isSign('>')) return;
    for (int i = 1; i < end; ++i) {
      boolean first = tokens.get(i - 1).isSign('(') || tokens.get(i - 1).isSign(',');
      if (first && tokens.get(i).kind() == DaxTokens.Kind.WORD)
        parameters.add(Names.fold(tokens.get(i).value()));
    }
  }

  /** VAR name = ..., up to the VAR or RETURN that follows at the same depth, or the end of the argument. */
  private void readVariables() {
    int[] openAt = new int[tokens.size() + 1];
    String[] openName = new String[tokens.size() + 1];
    int depth = 0;
    for (int i = 0; i <= tokens.size(); ++i) {
      DaxTokens.Token token = tokens.get(i);
      boolean opens = token.isSign('(') || token.isSign('{');
      boolean closes = token.isSign(')') || token.isSign('}');
      boolean ends = closes || i == tokens.size() || token.isWord("VAR") || token.isWord("RETURN");
      if (ends && openName[depth] != null) {
        variables.computeIfAbsent(openName[depth], n -> new ArrayList<>(1)).add(new Range(openAt[depth], i));
        openName[depth] = null;
      }
      if (opens) openName[++depth] = null;
      if (closes && depth > 0) --depth;
      if (token.isWord("VAR") && tokens.get(i + 1).kind() == DaxTokens.Kind.WORD
          && tokens.get(i + 2).isSign('=')) {
        openName[depth] = Names.fold(tokens.get(i + 1).value());
        openAt[depth] = i + 3;
      }
    }
  }

  /** Notes what stands at a place; gives the last place that belongs to it. */
  private int readReference(int i) {
    DaxTokens.Token token = tokens.get(i);
    switch (token.kind()) {
      case TEXT -> texts.computeIfAbsent(Names.fold(token.value()), t -> new ArrayList<>(1)).add(i);
      case SIGN -> hasConstructor |= token.isSign('{');
      case BRACKETED -> {
        references.add(new Reference(null, token.value(), i));
        return skipVariation(i);
      }
      case QUOTED -> {
        if (tokens.get(i + 1).kind() == DaxTokens.Kind.BRACKETED) return qualified(i);
        references.add(new Reference(token.value(), null, i));
      }
      case WORD -> {
        if (tokens.get(i + 1).isSign('(')) {
          calls.add(Names.fold(token.value()));
        } else if (!KEYWORDS.contains(Names.fold(token.value()))) {
          if (tokens.get(i + 1).kind() == DaxTokens.Kind.BRACKETED) return qualified(i);
          references.add(new Reference(token.value(), null, i));
        }
      }
      default -> { }
    }
    return i;
  }

  private int qualified(int i) {
    DaxTokens.Token table = tokens.get(i);
    // An empty table name, and a variable's, stand for columns that the expression makes.
    boolean word = table.kind() == DaxTokens.Kind.WORD;
    boolean local = table.value().isEmpty() || word && isLocalName(table.value());
    if (!local) references.add(new Reference(table.value(), tokens.get(i + 1).value(), i));
    return skipVariation(i + 1);
  }

  /** 'Date'[Day].[Month] leads to a hidden date table; its column is 'Date'[Day]. */
  private int skipVariation(int i) {
    while (tokens.get(i + 1).isSign('.') && tokens.get(i + 2).kind() == DaxTokens.Kind.BRACKETED) i += 2;
    return i;
  }

  /** Whether a table named alone stands here as a bare word, which may as well be a keyword. */
  boolean isBareWord(Reference reference) {
    return reference.column == null && tokens.get(reference.place).kind() == DaxTokens.Kind.WORD;
  }
}

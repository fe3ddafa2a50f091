package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Set;

/** A DAX expression, or a function of a model, as a tree. */
public final class DaxExpression {
  /**
   * A parameter of a function; `value` is its default, null when there is none. One of the mode EXPR is
   * evaluated where the body uses it, any other where the function is called.
   */
  record Parameter(String name, DaxNode value, boolean isExpression) {}

  /** References are expressions too; whether one names a column or a measure only its use tells. */
  private static final Set<String> EXPRESSIONS = Set.of("expr", "anyref");

  final String text;
  final DaxNode root;
  final List<Parameter> parameters;
  /** Null when all of it could be read. */
  final DaxFault fault;
  /** What a query defines to be called, by folded name; empty for other expressions. */
  final Map<String, DaxExpression> functions = new HashMap<>();
  /** Whether it is such a function. */
  final boolean isOfQuery;
  private DaxPlaces places;

  private DaxExpression(String text, DaxParser parser, List<Parameter> parameters, boolean isOfQuery) {
    this.text = text;
    this.parameters = parameters;
    this.isOfQuery = isOfQuery;
    root = parser.parse();
    fault = parser.fault;
    parser.functions.forEach((name, body) -> functions.put(name, function(body, true)));
  }

  public DaxExpression(String text) { this(text, new DaxParser(DaxTokens.of(text), 0), List.of(), false); }

  /** Whether a text calls one of these functions, whose names are in capitals. */
  public static boolean calls(String text, Set<String> functions) {
    String folded = text.toUpperCase(Locale.ROOT);
    if (functions.stream().noneMatch(folded::contains)) return false;
    DaxTokens tokens = DaxTokens.of(text);
    for (int i = 0; i + 1 < tokens.size(); ++i) {
      boolean call = tokens.get(i).kind() == DaxTokens.Kind.WORD && tokens.get(i + 1).isSign('(');
      if (call && functions.contains(tokens.get(i).value().toUpperCase(Locale.ROOT))) return true;
    }
    return false;
  }

  /** Whether a text, an expression or a function, ends where more must follow. */
  public static boolean endsEarly(String text) {
    DaxTokens tokens = DaxTokens.of(text);
    DaxParser parser = new DaxParser(tokens, endOfHead(tokens));
    parser.parse();
    return parser.endsEarly;
  }

  /** Counted when something is wrong at one. */
  DaxPlaces places() {
    if (places == null) places = new DaxPlaces(text);
    return places;
  }

  /** `( a : type, b = 1 ) => body`; a text without such a head is a function without parameters. */
  static DaxExpression function(String text) { return function(text, false); }

  private static DaxExpression function(String text, boolean isOfQuery) {
    DaxTokens tokens = DaxTokens.of(text);
    int end = endOfHead(tokens);
    List<Parameter> parameters = new ArrayList<>();
    for (int i = 1; i < end - 2;) i = readParameter(tokens, i, end - 2, parameters);
    return new DaxExpression(text, new DaxParser(tokens, end), parameters, isOfQuery);
  }

  /** The place behind "( ... ) =>" at the beginning; 0 when there is no such head. */
  private static int endOfHead(DaxTokens tokens) {
    if (!tokens.get(0).isSign('(')) return 0;
    int end = 1;
    for (int depth = 1; end < tokens.size() && depth > 0; ++end) {
      if (tokens.get(end).isSign('(')) ++depth;
      if (tokens.get(end).isSign(')')) --depth;
    }
    return tokens.get(end).isSign('=') && tokens.get(end + 1).isSign('>') ? end + 2 : 0;
  }

  /** Gives the place behind the comma that ends the parameter. */
  private static int readParameter(DaxTokens tokens, int begin, int end, List<Parameter> parameters) {
    int equals = -1;
    int at = begin;
    boolean isExpression = false;
    for (int depth = 0; at < end && !(depth == 0 && tokens.get(at).isSign(',')); ++at) {
      if (tokens.get(at).isSign('(') || tokens.get(at).isSign('{')) ++depth;
      if (tokens.get(at).isSign(')') || tokens.get(at).isSign('}')) --depth;
      if (depth < 0) break;
      if (depth == 0 && equals < 0 && tokens.get(at).isSign('=')) equals = at;
      isExpression |= equals < 0 && at > begin && EXPRESSIONS.contains(Names.fold(tokens.get(at).value()));
    }
    if (tokens.get(begin).kind() == DaxTokens.Kind.WORD) {
      DaxNode value = equals < 0 ? null : new DaxParser(tokens.part(equals + 1, at), 0).parse();
      parameters.add(new Parameter(Names.fold(tokens.get(begin).value()), value, isExpression));
    }
    return at + 1;
  }
}

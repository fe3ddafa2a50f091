package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.ArrayList;
import java.util.List;

/** Reads a query of the M language into a tree. */
final class MParser {
  /** The text is anybody's, and each level of nesting takes some of Java's stack. */
  private static final int MAX_DEPTH = 300;

  private final MTokens tokens;
  private int at;
  private int depth;
  /** All names that expressions use, in the text's order: those of a step are a range of it. */
  private final List<String> used = new ArrayList<>();

  private MParser(String text) { tokens = new MTokens(text); }

  static MNode parse(String text) throws MSyntaxFault {
    MParser parser = new MParser(text);
    MNode node = parser.isSection() ? parser.section() : parser.expression();
    if (parser.next().kind() != MTokens.Kind.END) throw parser.unexpected();
    return node;
  }

  private boolean isSection() throws MSyntaxFault {
    int begin = at;
    if (next().isSign("[")) bracket(true);
    if (next().isWord("section")) return true;
    at = begin;
    used.clear();
    return false;
  }

  /** section Name; shared A = ...; B = ...; comes to the record of its members. */
  private MNode section() throws MSyntaxFault {
    int begin = tokens.get(at++).begin();
    List<String> names = new ArrayList<>();
    List<MNode> values = new ArrayList<>();
    if (next().isName()) ++at;
    expectSign(";");
    while (next().kind() != MTokens.Kind.END) {
      if (next().isSign("[")) bracket(true);
      if (next().isWord("shared") && tokens.get(at + 1).isName()) ++at;
      names.add(name());
      expectSign("=");
      values.add(expression());
      expectSign(";");
    }
    return MNode.of(MNode.Kind.RECORD, names, values, begin);
  }

  private MTokens.Token next() { return tokens.get(at); }

  private MSyntaxFault unexpected() {
    MTokens.Token token = next();
    boolean end = token.kind() == MTokens.Kind.END;
    return new MSyntaxFault(
        end ? "the query ends too early" : "unexpected '" + token.value() + "'", token.begin(), end);
  }

  private boolean takeSign(String sign) {
    if (!next().isSign(sign)) return false;
    ++at;
    return true;
  }

  private boolean takeWord(String word) {
    if (!next().isWord(word)) return false;
    ++at;
    return true;
  }

  private void expectSign(String sign) throws MSyntaxFault {
    if (!takeSign(sign)) throw unexpected();
  }

  private void expectWord(String word) throws MSyntaxFault {
    if (!takeWord(word)) throw unexpected();
  }

  private MNode expression() throws MSyntaxFault {
    MTokens.Token token = next();
    if (++depth > MAX_DEPTH) throw new MSyntaxFault("nested too deeply", token.begin());
    MNode node = switch (token.kind() == MTokens.Kind.WORD ? token.value() : "") {
      case "let" -> let();
      case "if" -> condition();
      case "try" -> attempt();
      case "each" -> each();
      case "error" -> {
        ++at;
        expression();
        yield MNode.of(MNode.Kind.NOTHING, "", token.begin());
      }
      default -> isFunction() ? function() : operation(1);
    };
    --depth;
    return node.until(tokens.get(at - 1).end());
  }

  private MNode each() throws MSyntaxFault {
    int begin = tokens.get(at++).begin();
    return MNode.of(MNode.Kind.FUNCTION, List.of("_"), List.of(expression()), begin);
  }

  private MNode let() throws MSyntaxFault {
    MLet let = new MLet(used, tokens.get(at++).begin());
    do {
      String name = name();
      expectSign("=");
      let.step(name, this::expression);
    } while (takeSign(","));
    expectWord("in");
    return let.node(expression());
  }

  private String name() throws MSyntaxFault {
    if (!next().isName()) throw unexpected();
    return tokens.get(at++).value();
  }

  /** A chain of "else if" is one node, however long it is. */
  private MNode condition() throws MSyntaxFault {
    int begin = next().begin();
    List<MNode> items = new ArrayList<>();
    while (takeWord("if")) {
      items.add(expression());
      expectWord("then");
      items.add(expression());
      expectWord("else");
    }
    items.add(expression());
    return MNode.of(MNode.Kind.IF, List.of(), items, begin);
  }

  private MNode attempt() throws MSyntaxFault {
    int begin = tokens.get(at++).begin();
    List<MNode> items = new ArrayList<>(List.of(expression()));
    boolean caught = takeWord("catch");
    if (caught || takeWord("otherwise")) items.add(expression());
    return MNode.of(caught ? MNode.Kind.CATCH : MNode.Kind.TRY, List.of(), items, begin);
  }

  /** Whether a parenthesis opens the parameters of a function: () =>, (x, optional y as text) as any =>. */
  private boolean isFunction() {
    int place = at + 1;
    if (!next().isSign("(")) return false;
    for (boolean first = true; !tokens.get(place).isSign(")"); first = false) {
      if (!first && !tokens.get(place++).isSign(",")) return false;
      if (tokens.get(place).isWord("optional") && tokens.get(place + 1).isName()) ++place;
      if (!tokens.get(place).isName()) return false;
      place = behindType(place + 1);
    }
    return tokens.get(behindType(place + 1)).isSign("=>");
  }

  /** The place behind `as nullable text`, of which each part may be missing. */
  private int behindType(int place) {
    if (!tokens.get(place).isWord("as")) return place;
    return tokens.get(place + 1).isWord("nullable") ? place + 3 : place + 2;
  }

  private MNode function() throws MSyntaxFault {
    int begin = tokens.get(at++).begin();
    List<String> names = new ArrayList<>();
    if (!takeSign(")")) {
      do {
        if (next().isWord("optional") && tokens.get(at + 1).isName()) ++at;
        names.add(name());
        if (takeWord("as")) type();
      } while (takeSign(","));
      expectSign(")");
    }
    if (takeWord("as")) type();
    expectSign("=>");
    return MNode.of(MNode.Kind.FUNCTION, names, List.of(expression()), begin);
  }

  private String operator() {
    MTokens.Token token = next();
    boolean can = token.kind() == MTokens.Kind.SIGN || token.kind() == MTokens.Kind.WORD;
    return can && MTokens.STRENGTHS.containsKey(token.value()) ? token.value() : null;
  }

  private MNode operation(int least) throws MSyntaxFault {
    MNode left = operand();
    for (String operator = operator(); operator != null; operator = operator()) {
      int strength = MTokens.STRENGTHS.get(operator);
      if (strength < least) break;
      List<String> operators = new ArrayList<>();
      List<MNode> operands = new ArrayList<>(List.of(left));
      // Operators of one strength side by side are one node, so that a long sum is no deep tree.
      while (operator != null && MTokens.STRENGTHS.get(operator) == strength) {
        ++at;
        operators.add(operator);
        operands.add(operator.equals("is") || operator.equals("as") ? type() : operation(strength + 1));
        operator = operator();
      }
      left = MNode.of(MNode.Kind.OPERATION, operators, operands, left.at());
    }
    return left;
  }

  private MNode operand() throws MSyntaxFault {
    String operator = null;
    int begin = next().begin();
    for (boolean negated = false;; operator = negated ? "not" : "-") {
      if (takeWord("not"))
        negated = !negated;
      else if (!takeSign("+") && !takeSign("-"))
        break;
    }
    if (takeWord("type")) return type();
    MNode node = access();
    return operator == null ? node : MNode.of(MNode.Kind.OPERATION, List.of(operator), List.of(node), begin);
  }

  private MNode access() throws MSyntaxFault {
    MNode value = primary();
    List<MNode> items = new ArrayList<>(List.of(value));
    while (next().isSign("(") || next().isSign("{") || next().isSign("[")) {
      int begin = next().begin();
      if (next().isSign("[")) {
        items.add(bracket(false));
      } else {
        boolean call = next().isSign("(");
        List<MNode> inside = inside(call ? ")" : "}");
        if (!call && inside.size() != 1) throw new MSyntaxFault("one place or key is expected", begin);
        if (call)
          items.add(MNode.of(MNode.Kind.ARGUMENTS, List.of(), inside, value.at()));
        else
          items.add(MNode.of(MNode.Kind.ITEM, List.of(), inside, begin));
      }
      takeSign("?");
    }
    return items.size() == 1 ? value : MNode.of(MNode.Kind.ACCESS, List.of(), items, value.at());
  }

  private MNode primary() throws MSyntaxFault {
    boolean own = takeSign("@");
    MTokens.Token token = next();
    switch (token.kind()) {
      case TEXT:
        ++at;
        return MNode.of(MNode.Kind.TEXT, token.value(), token.begin());
      case NUMBER:
        ++at;
        return MNode.of(MNode.Kind.NUMBER, token.value(), token.begin());
      case QUOTED, WORD:
        return word(token, own);
      default:
        break;
    }
    if (token.isSign("[")) {
      MNode node = bracket(true);
      takeSign("?");
      return node;
    }
    if (token.isSign("{")) return MNode.of(MNode.Kind.LIST, List.of(), inside("}"), token.begin());
    if (takeSign("...")) return MNode.of(MNode.Kind.NOTHING, "", token.begin());
    expectSign("(");
    MNode node = expression();
    expectSign(")");
    return node;
  }

  private MNode word(MTokens.Token token, boolean own) throws MSyntaxFault {
    boolean quoted = token.kind() == MTokens.Kind.QUOTED;
    if (!quoted && MTokens.KEYWORDS.contains(token.value())) throw unexpected();
    ++at;
    if (!quoted && token.value().equals("null")) return MNode.of(MNode.Kind.NOTHING, "null", token.begin());
    if (!quoted && (token.value().equals("true") || token.value().equals("false")))
      return MNode.of(MNode.Kind.LOGICAL, token.value(), token.begin());
    String name = takeSign("!") ? name() : token.value();
    used.add(name);
    return MNode.of(own ? MNode.Kind.OWN_NAME : MNode.Kind.NAME, name, token.begin());
  }

  /** The expressions from a bracket to the one that closes it. */
  private List<MNode> inside(String close) throws MSyntaxFault {
    ++at;
    List<MNode> items = new ArrayList<>();
    if (takeSign(close)) return items;
    do {
      MNode first = expression();
      boolean range = takeSign("..");
      items.add(
          range ? MNode.of(MNode.Kind.RANGE, List.of(), List.of(first, expression()), first.at()) : first);
    } while (takeSign(","));
    expectSign(close);
    return items;
  }

  /** [Name], [[A], [B]], or where a value begins, [A = 1, B = 2]. */
  private MNode bracket(boolean record) throws MSyntaxFault {
    int begin = tokens.get(at++).begin();
    if (next().isSign("[")) return columns(begin);
    List<String> names = new ArrayList<>();
    List<MNode> values = new ArrayList<>();
    if (record && takeSign("]")) return MNode.of(MNode.Kind.RECORD, names, values, begin);
    String name = fieldName();
    if (!record || next().isSign("]")) {
      expectSign("]");
      if (record) used.add("_");
      return MNode.of(MNode.Kind.FIELD, name, begin);
    }
    for (boolean first = true; first || takeSign(","); first = false) {
      names.add(first ? name : fieldName());
      expectSign("=");
      values.add(expression());
    }
    expectSign("]");
    return MNode.of(MNode.Kind.RECORD, names, values, begin);
  }

  private MNode columns(int begin) throws MSyntaxFault {
    List<String> names = new ArrayList<>();
    do {
      expectSign("[");
      names.add(fieldName());
      expectSign("]");
      takeSign("?");
    } while (takeSign(","));
    expectSign("]");
    used.add("_");
    return MNode.of(MNode.Kind.COLUMNS, names, List.of(), begin);
  }

  /**
   * A field's name may be of several words, also of words that elsewhere mean something: [Number of Items].
   */
  private String fieldName() throws MSyntaxFault {
    MTokens.Token first = next();
    MTokens.Token last = null;
    for (; !next().isSign("]") && !next().isSign("=") && !next().isSign(","); ++at) {
      last = next();
      if (last.kind() == MTokens.Kind.END) throw unexpected();
    }
    if (last == null) throw unexpected();
    return first == last && first.isName() ? first.value() : tokens.written(first, last);
  }

  private MNode type() throws MSyntaxFault {
    MTokens.Token token = next();
    if (++depth > MAX_DEPTH) throw new MSyntaxFault("nested too deeply", token.begin());
    List<String> names = new ArrayList<>();
    while (takeWord("nullable")) continue;
    if (takeWord("table")) {
      if (next().isSign("["))
        fields(names);
      else if (!isTypeEnd())
        access();
    } else if (next().isSign("[")) {
      fields(names);
    } else if (takeSign("{")) {
      type();
      expectSign("}");
    } else if (next().isWord("function") && tokens.get(at + 1).isSign("(")) {
      ++at;
      parameterTypes();
    } else {
      access();
    }
    --depth;
    return MNode.of(MNode.Kind.TYPE, names, List.of(), token.begin());
  }

  private boolean isTypeEnd() {
    MTokens.Token token = next();
    boolean value = token.kind() == MTokens.Kind.QUOTED || token.isSign("(");
    return !value;
  }

  private void fields(List<String> names) throws MSyntaxFault {
    ++at;
    if (takeSign("]")) return;
    do {
      if (takeSign("...")) continue;
      MTokens.Token second = tokens.get(at + 1);
      if (next().isWord("optional") && !second.isSign("=") && !second.isSign(",") && !second.isSign("]"))
        ++at;
      names.add(fieldName());
      if (takeSign("=")) type();
    } while (takeSign(","));
    expectSign("]");
  }

  private void parameterTypes() throws MSyntaxFault {
    ++at;
    if (!takeSign(")")) {
      do {
        takeWord("optional");
        name();
        if (takeWord("as")) type();
      } while (takeSign(","));
      expectSign(")");
    }
    if (takeWord("as")) type();
  }
}

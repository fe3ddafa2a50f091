package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Reads DAX into a tree. What is open stands on a stack of its own, because the depth is the text's.
 * Operators bind nothing here: what a value comes from is the same however its operands are grouped. After a
 * fault it goes on behind it; the first fault is kept.
 */
final class DaxParser {
  /** What is open: the whole text, a bracket, the arguments of a call, or variables with their result. */
  private static final class Frame {
    final DaxNode.Kind kind;
    final int place;
    final String name;
    final List<DaxNode> done = new ArrayList<>(4);
    List<DaxNode> operands = new ArrayList<>(2);
    boolean complete;
    /** Where its bracket is. */
    int bracket;
    /** Of a block: the variable whose value is being read; null once its result is. */
    String variable;
    int variablePlace;

    Frame(DaxNode.Kind kind, int place, String name) {
      this.kind = kind;
      this.place = place;
      bracket = place;
      this.name = name;
    }

    boolean bracketed() { return kind != DaxNode.Kind.BLOCK && kind != DaxNode.Kind.OPERATION; }
  }

  private static final String SIGNS = "+-*/^&=<>|!";
  /** Words that end one expression of a query and begin another. */
  private static final Set<String> QUERY = Set.of("evaluate", "define", "order", "by", "start", "at");
  private static final Set<String> DEFINED =
      Set.of("measure", "column", "table", "function", "mparameter");
  private static final Set<String> DIRECTIONS = Set.of("asc", "desc", "blanks", "first", "last");
  private static final Set<String> VALUES = Set.of("true", "false");

  private final DaxTokens tokens;
  private final Deque<Frame> open = new ArrayDeque<>();
  /** The texts of what a query defines to be called, by folded name. */
  final Map<String, String> functions = new HashMap<>();
  private boolean isQuery;
  private int at;
  DaxFault fault;
  /** Whether the text ends where more must follow. */
  boolean endsEarly;

  DaxParser(DaxTokens tokens, int begin) {
    this.tokens = tokens;
    at = begin;
    if (tokens.openPosition() >= 0) fail(tokens.openPosition(), tokens.expected());
  }

  DaxNode parse() {
    isQuery = tokens.get(at).isWord("EVALUATE") || tokens.get(at).isWord("DEFINE");
    open.push(new Frame(DaxNode.Kind.OPERATION, 0, ""));
    if (tokens.get(at).isSign('=')) ++at;
    while (at < tokens.size()) next();
    endsEarly = tokens.openPosition() >= 0 || isUnfinished();
    while (open.size() > 1) {
      Frame frame = open.peek();
      if (frame.kind == DaxNode.Kind.BLOCK) {
        closeBlock();
      } else {
        fail(frame.bracket, frame.kind == DaxNode.Kind.ROWS ? "expected }" : "expected )");
        close();
      }
    }
    endExpression(open.peek());
    List<DaxNode> done = open.peek().done;
    // What orders a result is read in its rows, as parts of one block are.
    return isQuery && done.size() > 1 ? DaxNode.of(DaxNode.Kind.BLOCK, 0, "", done) : group(done, 0);
  }

  /** Whether a bracket is open, or a value is missing behind an operator or a variable. */
  private boolean isUnfinished() {
    for (Frame frame : open)
      if (frame.variable != null || frame.bracketed()) return true;
    Frame last = open.peek();
    return !last.complete && !last.operands.isEmpty();
  }

  private void fail(int place, String text) {
    if (fault == null) fault = new DaxFault(place, text);
  }

  private void next() {
    DaxTokens.Token token = tokens.get(at++);
    switch (token.kind()) {
      case TEXT -> operand(DaxNode.of(DaxNode.Kind.TEXT, token.position(), token.value(), List.of()));
      case NUMBER -> operand(DaxNode.constant(token.position()));
      case BRACKETED -> column(token, null, token.position());
      case QUOTED -> tableOrColumn(token);
      case WORD -> word(token);
      default -> sign(token, token.value().charAt(0));
    }
  }

  private void column(DaxTokens.Token name, String table, int place) {
    if (isQuery && table == null && tokens.get(at).isSign('.')
        && tokens.get(at + 1).kind() == DaxTokens.Kind.BRACKETED) {
      // Report designers write a column as [Table].[Column].
      table = name.value();
      name = tokens.get(at + 1);
      at += 2;
    }
    operand(DaxNode.column(place, table, name.value()));
    // 'Date'[Day].[Month] leads to a hidden date table; its column is 'Date'[Day].
    while (tokens.get(at).isSign('.') && tokens.get(at + 1).kind() == DaxTokens.Kind.BRACKETED) at += 2;
  }

  private void tableOrColumn(DaxTokens.Token token) {
    boolean quoted = token.kind() == DaxTokens.Kind.QUOTED;
    if (tokens.get(at).kind() == DaxTokens.Kind.BRACKETED) {
      column(tokens.get(at++), token.value(), token.position());
    } else {
      DaxNode.Kind kind = quoted ? DaxNode.Kind.TABLE : DaxNode.Kind.WORD;
      operand(DaxNode.of(kind, token.position(), token.value(), List.of()));
    }
  }

  private void word(DaxTokens.Token token) {
    String word = Names.fold(token.value());
    DaxTokens.Token following = tokens.get(at);
    if (word.equals("var") && following.kind() == DaxTokens.Kind.WORD && tokens.get(at + 1).isSign('=')) {
      variable(token.position(), following.value());
      at += 2;
    } else if (word.equals("return")) {
      beginResult(token);
    } else if (word.equals("not")) {
      open.peek().complete = false;
    } else if (word.equals("in")) {
      operator(token);
    } else if (isQuery && queryWord(token, word)) {
      return;
    } else if (following.isSign('(')) {
      ++at;
      begin(new Frame(DaxNode.Kind.CALL, token.position(), token.value()));
      open.peek().bracket = following.position();
    } else if (word.equals("dt") && following.kind() == DaxTokens.Kind.TEXT) {
      ++at;
      operand(DaxNode.constant(token.position()));
    } else if (VALUES.contains(word) && following.kind() != DaxTokens.Kind.BRACKETED) {
      operand(DaxNode.constant(token.position()));
    } else if (!(open.peek().complete && DIRECTIONS.contains(word))) {
      tableOrColumn(token);
    }
  }

  /** The clauses around the expressions of a query. What it defines is a variable of that name. */
  private boolean queryWord(DaxTokens.Token token, String word) {
    if (define(token, word)) return true;
    if (!QUERY.contains(word)) return false;
    endOfResults(token);
    return true;
  }

  /** What follows belongs to nothing that was defined or asked for before. */
  private void endOfResults(DaxTokens.Token token) {
    while (open.peek().kind == DaxNode.Kind.BLOCK && open.peek().variable != null) beginResult(token);
    endExpression(open.peek());
  }

  /** MEASURE 'Table'[Name] = ..., COLUMN 'Table'[Name] = ..., and what has a name without a table. */
  private boolean define(DaxTokens.Token token, String word) {
    if (!startsDefinition(at - 1)) return false;
    DaxTokens.Token first = tokens.get(at);
    int equals = tokens.get(at + 1).isSign('=') ? at + 1 : at + 2;
    switch (word) {
      case "function" -> {
        endOfResults(token);
        defineFunction(first.value(), equals + 1);
        return true;
      }
      case "table" -> variable(token.position(), "'" + first.value() + "'");
      // Nothing in DAX can name what is handed to queries in M.
      case "mparameter" -> variable(token.position(), "");
      default -> variable(token.position(), "[" + tokens.get(equals - 1).value() + "]");
    }
    at = equals + 1;
    return true;
  }

  /** Whether a definition of a query begins at the place: its kind, its name and "=". */
  private boolean startsDefinition(int place) {
    String word = tokens.get(place).kind() == DaxTokens.Kind.WORD ? Names.fold(tokens.get(place).value()) : "";
    if (!DEFINED.contains(word)) return false;
    DaxTokens.Kind first = tokens.get(place + 1).kind();
    boolean named = first == DaxTokens.Kind.WORD || first == DaxTokens.Kind.QUOTED;
    boolean inTable = word.equals("measure") || word.equals("column");
    if (!inTable) return named && tokens.get(place + 2).isSign('=');
    int name = named ? place + 2 : place + 1;
    return tokens.get(name).kind() == DaxTokens.Kind.BRACKETED && tokens.get(name + 1).isSign('=');
  }

  private void defineFunction(String name, int begin) {
    at = endOfFunction(begin);
    functions.putIfAbsent(Names.fold(name), tokens.written(begin, at));
  }

  /** The place of what follows the function that begins at `begin`. Its own variables belong to it. */
  private int endOfFunction(int begin) {
    int depth = 0;
    boolean inBlock = false;
    int place = begin;
    for (; place < tokens.size(); ++place) {
      DaxTokens.Token token = tokens.get(place);
      if (token.isSign('(') || token.isSign('{')) ++depth;
      if (token.isSign(')') || token.isSign('}')) --depth;
      if (depth > 0 || token.kind() != DaxTokens.Kind.WORD) continue;
      if (token.isWord("EVALUATE") || startsDefinition(place)) break;
      if (token.isWord("VAR") && !inBlock && place > begin && endsValue(tokens.get(place - 1))) break;
      inBlock = token.isWord("VAR") || inBlock && !token.isWord("RETURN");
    }
    return place;
  }

  private static boolean endsValue(DaxTokens.Token token) {
    boolean sign = token.kind() == DaxTokens.Kind.SIGN;
    return sign ? token.isSign(')') || token.isSign('}') : !token.isWord("RETURN");
  }

  private void variable(int place, String name) {
    Frame frame = open.peek();
    // What begins behind another variable's value, or as the result of a block, belongs to the same block.
    while (frame.kind == DaxNode.Kind.BLOCK && frame.variable == null && !frame.operands.isEmpty()) {
      closeBlock();
      frame = open.peek();
    }
    boolean goesOn =
        frame.kind == DaxNode.Kind.BLOCK && (frame.variable == null || !frame.operands.isEmpty());
    if (goesOn) {
      endExpression(frame);
    } else {
      frame = new Frame(DaxNode.Kind.BLOCK, place, "");
      begin(frame);
    }
    frame.variable = name;
    frame.variablePlace = place;
  }

  private void beginResult(DaxTokens.Token token) {
    while (open.peek().kind == DaxNode.Kind.BLOCK && open.peek().variable == null) closeBlock();
    Frame frame = open.peek();
    if (frame.kind != DaxNode.Kind.BLOCK) {
      fail(token.position(), "RETURN without VAR");
      return;
    }
    endExpression(frame);
    frame.variable = null;
  }

  private void closeBlock() {
    Frame frame = open.peek();
    if (frame.variable != null) fail(frame.variablePlace, "expected RETURN");
    endExpression(frame);
    open.pop();
    operand(DaxNode.of(DaxNode.Kind.BLOCK, frame.place, "", frame.done));
  }

  private void begin(Frame frame) {
    expectOperand(frame.place);
    open.push(frame);
  }

  private void expectOperand(int place) {
    if (open.peek().complete) fail(place, "expected an operator");
  }

  private void operand(DaxNode node) {
    expectOperand(node.place());
    open.peek().operands.add(node);
    open.peek().complete = true;
  }

  private void operator(DaxTokens.Token token) {
    if (!open.peek().complete) fail(token.position(), "expected a value");
    open.peek().complete = false;
  }

  private void sign(DaxTokens.Token token, char sign) {
    switch (sign) {
      case '(' -> begin(new Frame(DaxNode.Kind.TUPLE, token.position(), ""));
      case '{' -> begin(new Frame(DaxNode.Kind.ROWS, token.position(), ""));
      case ')', '}' -> closeAt(token, sign);
      case ',', ';' -> comma(token);
      case '@' -> {
        if (tokens.get(at).kind() == DaxTokens.Kind.WORD) ++at;
        operand(DaxNode.constant(token.position()));
      }
      default -> {
        if (SIGNS.indexOf(sign) < 0) {
          fail(token.position(), "unexpected " + sign);
        } else if (open.peek().complete) {
          operator(token);
          while (isDoubled(sign)) sign = tokens.get(at++).value().charAt(0);
        } else if (sign != '-' && sign != '+' && sign != '!') {
          operator(token);
        }
      }
    }
  }

  /** Whether the next sign is the second one of an operator: && || == <> <= >= */
  private boolean isDoubled(char sign) {
    DaxTokens.Token token = tokens.get(at);
    if (token.kind() != DaxTokens.Kind.SIGN) return false;
    char second = token.value().charAt(0);
    return "&|=".indexOf(sign) >= 0 && second == sign || sign == '<' && (second == '>' || second == '=')
        || sign == '>' && second == '=';
  }

  private void comma(DaxTokens.Token token) {
    while (open.peek().kind == DaxNode.Kind.BLOCK && !isOfQuery(open.peek())) closeBlock();
    Frame frame = open.peek();
    if (frame.kind == DaxNode.Kind.OPERATION && !isQuery) fail(token.position(), "unexpected ,");
    endArgument(frame, token.position());
  }

  /** Whether it holds the results of a query and what orders them, which commas separate. */
  private boolean isOfQuery(Frame frame) { return isQuery && open.size() == 2 && frame.variable == null; }

  private void closeAt(DaxTokens.Token token, char sign) {
    while (open.peek().kind == DaxNode.Kind.BLOCK) closeBlock();
    Frame frame = open.peek();
    boolean braces = frame.kind == DaxNode.Kind.ROWS;
    if (frame.kind == DaxNode.Kind.OPERATION || braces != (sign == '}')) {
      fail(token.position(), "unexpected " + sign);
      return;
    }
    close();
  }

  private void close() {
    Frame frame = open.pop();
    boolean empty = frame.operands.isEmpty() && frame.done.isEmpty();
    if (!empty) endArgument(frame, frame.place);
    if (frame.kind != DaxNode.Kind.TUPLE) {
      operand(DaxNode.of(frame.kind, frame.place, frame.name, frame.done));
    } else {
      operand(frame.done.size() == 1 ? frame.done.get(0)
                                     : DaxNode.of(DaxNode.Kind.TUPLE, frame.place, "", frame.done));
    }
  }

  /** An argument that is left out is one all the same: those behind it keep their places. */
  private void endArgument(Frame frame, int place) {
    if (frame.operands.isEmpty()) frame.operands.add(DaxNode.constant(place));
    endExpression(frame);
  }

  private void endExpression(Frame frame) {
    if (!frame.operands.isEmpty()) {
      if (!frame.complete && frame.operands.get(0).kind() != DaxNode.Kind.CONSTANT)
        fail(endOfText(), "expected a value");
      DaxNode node = group(frame.operands, frame.operands.get(0).place());
      frame.done.add(frame.variable == null
              ? node
              : DaxNode.of(DaxNode.Kind.DEFINITION, frame.variablePlace, frame.variable, List.of(node)));
    }
    frame.operands = new ArrayList<>(2);
    frame.complete = false;
  }

  private int endOfText() { return Math.max(tokens.get(at - 1).position(), 0); }

  private static DaxNode group(List<DaxNode> nodes, int place) {
    if (nodes.size() == 1) return nodes.get(0);
    return nodes.isEmpty() ? DaxNode.constant(place) : DaxNode.of(DaxNode.Kind.OPERATION, place, "", nodes);
  }
}

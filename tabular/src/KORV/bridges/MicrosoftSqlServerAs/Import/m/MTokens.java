package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** The tokens of a query in the M language: `Table.RenameColumns` is one word, #"Changed Type" is quoted. */
final class MTokens {
  /** Operators by how strongly they bind. */
  static final Map<String, Integer> STRENGTHS = Map.ofEntries(Map.entry("??", 1), Map.entry("or", 2),
      Map.entry("and", 3), Map.entry("is", 4), Map.entry("as", 4), Map.entry("=", 5), Map.entry("<>", 5),
      Map.entry("<", 6), Map.entry(">", 6), Map.entry("<=", 6), Map.entry(">=", 6), Map.entry("+", 7),
      Map.entry("-", 7), Map.entry("&", 7), Map.entry("*", 8), Map.entry("/", 8), Map.entry("meta", 9));
  static final Set<String> KEYWORDS = Set.of(
      "and", "as", "each", "else", "error", "if", "in", "is", "let", "meta", "or", "otherwise", "then");

  enum Kind { WORD, QUOTED, TEXT, NUMBER, SIGN, END }

  /**
   * A token with its place in the text; `value` has quotes removed and escapes undone. QUOTED is never a
   * keyword.
   */
  record Token(Kind kind, String value, int begin, int end) {
    boolean isSign(String sign) {
      return kind == Kind.SIGN && value.equals(sign);
    }

    /** To the letter. */
    boolean isWord(String word) {
      return kind == Kind.WORD && value.equals(word);
    }

    boolean isName() {
      return kind == Kind.WORD || kind == Kind.QUOTED;
    }
  }

  /** Signs of more than one character; a longer one stands before those that it begins with. */
  private static final List<String> LONG_SIGNS = List.of("...", "..", "=>", "<>", "<=", ">=", "??");

  private final String text;
  private int at;
  /** Where the token that is being read begins. */
  private int start;
  private final List<Token> tokens = new ArrayList<>();

  MTokens(String text) {
    this.text = text;
    while (at < text.length()) {
      char c = text.charAt(at);
      if (Names.isBlank(c)) {
        ++at;
      } else {
        read(c);
      }
    }
  }

  int size() { return tokens.size(); }

  /** The token at a place; a token of kind END behind the query. */
  Token get(int place) {
    return place < tokens.size() ? tokens.get(place) : new Token(Kind.END, "", text.length(), text.length());
  }

  /** What is written from one token to another. */
  String written(Token first, Token last) { return text.substring(first.begin, last.end); }

  private void read(char c) {
    start = at;
    if (text.startsWith("//", at)) {
      skipLine();
    } else if (text.startsWith("/*", at)) {
      int end = text.indexOf("*/", at + 2);
      at = end < 0 ? text.length() : end + 2;
    } else if (c == '"') {
      add(Kind.TEXT, unescape(enclosed()));
    } else if (text.startsWith("#!\"", at)) {
      // What a tool could not read is kept as a text, and evaluating it is an error.
      ++at;
      ++at;
      enclosed();
      add(Kind.SIGN, "...");
    } else if (text.startsWith("#\"", at)) {
      ++at;
      add(Kind.QUOTED, unescape(enclosed()));
    } else if (c == '#' || Names.startsWord(c)) {
      add(Kind.WORD, word());
    } else if (Names.isDigit(c) || c == '.' && at + 1 < text.length() && Names.isDigit(text.charAt(at + 1))) {
      add(Kind.NUMBER, number());
    } else {
      String sign = sign();
      at += sign.length();
      add(Kind.SIGN, sign);
    }
  }

  private String sign() {
    for (String sign : LONG_SIGNS) {
      if (text.startsWith(sign, at)) return sign;
    }
    return text.substring(at, at + 1);
  }

  private void add(Kind kind, String value) {
    tokens.add(new Token(kind, value, start, Math.min(at, text.length())));
  }

  private void skipLine() {
    while (at < text.length() && text.charAt(at) != '\n' && text.charAt(at) != '\r') ++at;
  }

  /** What begins at the place and goes on with letters, digits and dots; two dots are a sign: {1..9}. */
  private String word() {
    for (++at; at < text.length(); ++at) {
      boolean dot = text.charAt(at) == '.' && !text.startsWith("..", at);
      if (!dot && !Names.continuesWord(text.charAt(at))) break;
    }
    return text.substring(start, at);
  }

  /** 12, 1.5, .5, 0xff, 1e-5. */
  private String number() {
    word();
    boolean exponent = text.charAt(at - 1) == 'e' || text.charAt(at - 1) == 'E';
    boolean signed = at + 1 < text.length() && (text.charAt(at) == '-' || text.charAt(at) == '+');
    if (exponent && signed&& Names.isDigit(text.charAt(at + 1)) && !text.startsWith("0x", start)) word();
    return text.substring(start, at);
  }

  /** What stands between the quote at the place and the next one that is not doubled, or the text's end. */
  private String enclosed() {
    StringBuilder value = new StringBuilder();
    for (++at; at < text.length(); ++at) {
      if (text.charAt(at) == '"') {
        if (at + 1 >= text.length() || text.charAt(at + 1) != '"') break;
        ++at;
      }
      value.append(text.charAt(at));
    }
    ++at;
    return value.toString();
  }

  /**
   * #(tab), #(lf), #(cr), #(#) and #(00A0) stand for characters; several may stand in one pair of
   * parentheses.
   */
  private static String unescape(String text) {
    if (!text.contains("#(")) return text;
    StringBuilder plain = new StringBuilder();
    int at = 0;
    for (int open = text.indexOf("#("); open >= 0; open = text.indexOf("#(", at)) {
      int close = text.indexOf(')', open);
      if (close < 0) break;
      plain.append(text, at, open);
      for (String part : text.substring(open + 2, close).split(",")) plain.append(character(part.trim()));
      at = close + 1;
    }
    return plain.append(text.substring(at)).toString();
  }

  private static String character(String name) {
    switch (name) {
      case "tab":
        return "\t";
      case "lf":
        return "\n";
      case "cr":
        return "\r";
      case "#":
        return "#";
      default:
        if (!name.matches("[0-9A-Fa-f]{1,8}")) return "";
        long code = Long.parseLong(name, 16);
        return code > Character.MAX_CODE_POINT ? "" : Character.toString((int) code);
    }
  }
}

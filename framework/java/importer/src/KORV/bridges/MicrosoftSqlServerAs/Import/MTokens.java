package KORV.bridges.MicrosoftSqlServerAs.Import;

import java.util.ArrayList;
import java.util.List;

/** The tokens of a query in the M language. */
final class MTokens {
  enum Kind { WORD, NAME, TEXT, NUMBER, SIGN, END }

  /**
   * `Table.RenameColumns` is one word, #"Changed Type" a name without its marks, and NAME is never a
   * keyword.
   */
  record Token(Kind kind, String value) {
    boolean isSign(char sign) {
      return kind == Kind.SIGN && value.charAt(0) == sign;
    }

    boolean isWord(String word) {
      return kind == Kind.WORD && value.equals(word);
    }

    boolean isName() {
      return kind == Kind.WORD || kind == Kind.NAME;
    }
  }

  private static final Token END = new Token(Kind.END, "");

  private final String text;
  private final List<Token> tokens = new ArrayList<>();
  private int at;

  MTokens(String text) {
    this.text = text;
    while (at < text.length()) next();
  }

  int size() {
    return tokens.size();
  }

  Token get(int place) {
    return place < 0 || place >= tokens.size() ? END : tokens.get(place);
  }

  private void next() {
    char c = text.charAt(at);
    if (Names.isBlank(c)) {
      ++at;
    } else if (text.startsWith("//", at)) {
      while (at < text.length() && text.charAt(at) != '\n' && text.charAt(at) != '\r') ++at;
    } else if (text.startsWith("/*", at)) {
      int end = text.indexOf("*/", at + 2);
      at = end < 0 ? text.length() : end + 2;
    } else if (c == '"') {
      quoted(Kind.TEXT);
    } else if (text.startsWith("#\"", at)) {
      ++at;
      quoted(Kind.NAME);
    } else if (Names.startsWord(c) || c == '#') {
      int start = at++;
      while (at < text.length() && (Names.continuesWord(text.charAt(at)) || text.charAt(at) == '.')) ++at;
      tokens.add(new Token(Kind.WORD, text.substring(start, at)));
    } else if (Names.isDigit(c)) {
      int start = at++;
      while (at < text.length() && (Names.continuesWord(text.charAt(at)) || text.charAt(at) == '.')) ++at;
      tokens.add(new Token(Kind.NUMBER, text.substring(start, at)));
    } else {
      tokens.add(new Token(Kind.SIGN, text.substring(at, ++at)));
    }
  }

  private void quoted(Kind kind) {
    StringBuilder value = new StringBuilder();
    for (++at; at < text.length(); ++at) {
      char c = text.charAt(at);
      if (c == '"') {
        if (at + 1 >= text.length() || text.charAt(at + 1) != '"') break;
        ++at;
      }
      value.append(c);
    }
    ++at;
    tokens.add(new Token(kind, unescape(value.toString())));
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

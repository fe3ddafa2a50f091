package KORV.bridges.MicrosoftSqlServerAs.Import;

import java.util.ArrayList;
import java.util.List;

/** The tokens of an SQL query. */
final class SqlTokens {
  enum Kind { WORD, QUOTED, TEXT, NUMBER, SIGN, END }

  record Token(Kind kind, String value) {
    boolean isSign(char sign) {
      return kind == Kind.SIGN && value.charAt(0) == sign;
    }

    boolean isWord(String word) {
      return kind == Kind.WORD && value.equalsIgnoreCase(word);
    }

    boolean isName() {
      return kind == Kind.WORD || kind == Kind.QUOTED;
    }
  }

  private static final Token END = new Token(Kind.END, "");

  private final String text;
  private final List<Token> tokens = new ArrayList<>();
  private int at;

  SqlTokens(String text) {
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
    } else if (text.startsWith("--", at)) {
      while (at < text.length() && text.charAt(at) != '\n' && text.charAt(at) != '\r') ++at;
    } else if (text.startsWith("/*", at)) {
      skipComment();
    } else if (c == '\'') {
      enclosed(Kind.TEXT, '\'');
    } else if (c == '"' || c == '`') {
      enclosed(Kind.QUOTED, c);
    } else if (c == '[') {
      enclosed(Kind.QUOTED, ']');
    } else if (Names.startsWord(c) || c == '@' || c == '#') {
      int start = at++;
      while (
          at < text.length() && (Names.continuesWord(text.charAt(at)) || "@#$".indexOf(text.charAt(at)) >= 0))
        ++at;
      tokens.add(new Token(Kind.WORD, text.substring(start, at)));
    } else if (Names.isDigit(c)) {
      int start = at++;
      while (at < text.length() && (Names.continuesWord(text.charAt(at)) || text.charAt(at) == '.')) ++at;
      tokens.add(new Token(Kind.NUMBER, text.substring(start, at)));
    } else {
      tokens.add(new Token(Kind.SIGN, text.substring(at, ++at)));
    }
  }

  /** T-SQL's comments nest. */
  private void skipComment() {
    int depth = 0;
    do {
      if (text.startsWith("/*", at)) {
        ++depth;
        at += 2;
      } else if (text.startsWith("*/", at)) {
        --depth;
        at += 2;
      } else {
        ++at;
      }
    } while (depth > 0 && at < text.length());
  }

  private void enclosed(Kind kind, char close) {
    StringBuilder value = new StringBuilder();
    for (++at; at < text.length(); ++at) {
      if (text.charAt(at) == close) {
        if (at + 1 >= text.length() || text.charAt(at + 1) != close) break;
        ++at;
      }
      value.append(text.charAt(at));
    }
    ++at;
    tokens.add(new Token(kind, value.toString()));
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.List;

/** The tokens of a DAX expression: names, quoted names, bracketed names, texts, numbers and signs. */
final class DaxTokens {
  enum Kind { WORD, QUOTED, BRACKETED, TEXT, NUMBER, SIGN, END }

  /** A token; `value` has quotes and brackets removed and doubled ones undone, `position` counts from 0. */
  record Token(Kind kind, String value, int position) {
    boolean isSign(char sign) {
      return kind == Kind.SIGN && value.charAt(0) == sign;
    }

    boolean isWord(String word) {
      return kind == Kind.WORD && Names.same(value, word);
    }
  }

  private static final Token END = new Token(Kind.END, "", -1);

  private final String text;
  private final List<Token> tokens = new ArrayList<>();
  private int at;
  private int openPosition = -1;
  private String expected = "";

  private DaxTokens(String text) { this.text = text; }

  static DaxTokens of(String text) {
    DaxTokens made = new DaxTokens(text);
    while (made.at < text.length()) made.next();
    return made;
  }

  /** The tokens from `begin` to `end`, which is not included. */
  DaxTokens part(int begin, int end) {
    DaxTokens made = new DaxTokens(text);
    made.tokens.addAll(tokens.subList(begin, end));
    return made;
  }

  int size() { return tokens.size(); }

  /** What is written from one token to another, or to the end of the text. */
  String written(int begin, int end) {
    if (begin >= size()) return "";
    return text.substring(get(begin).position(), end < size() ? get(end).position() : text.length());
  }

  /** The token at a place; a token of kind END outside the expression. */
  Token get(int place) { return place < 0 || place >= tokens.size() ? END : tokens.get(place); }

  /** Where a quote, bracket or comment is opened and never closed; -1 when all are. */
  int openPosition() { return openPosition; }

  /** What is missing at openPosition(). */
  String expected() { return "expected " + expected; }

  private void next() {
    char c = text.charAt(at);
    if (Names.isBlank(c)) {
      ++at;
    } else if (startsWith("--") || startsWith("//")) {
      while (at < text.length() && text.charAt(at) != '\n' && text.charAt(at) != '\r') ++at;
    } else if (startsWith("/*")) {
      skipComment();
    } else if (c == '"') {
      enclosed(Kind.TEXT, '"');
    } else if (c == '\'') {
      enclosed(Kind.QUOTED, '\'');
    } else if (c == '[') {
      enclosed(Kind.BRACKETED, ']');
    } else if (Names.startsWord(c)) {
      word();
    } else if (Names.isDigit(c) || c == '.' && Names.isDigit(following())) {
      number();
    } else {
      tokens.add(new Token(Kind.SIGN, text.substring(at, ++at), at - 1));
    }
  }

  private char following() { return at + 1 < text.length() ? text.charAt(at + 1) : ' '; }

  private boolean startsWith(String sign) { return text.startsWith(sign, at); }

  private void skipComment() {
    int end = text.indexOf("*/", at + 2);
    if (end < 0) noteOpen(at, "*/");
    at = end < 0 ? text.length() : end + 2;
  }

  private void enclosed(Kind kind, char close) {
    int start = at++;
    StringBuilder value = new StringBuilder();
    while (at < text.length()) {
      char c = text.charAt(at++);
      if (c == close) {
        if (at == text.length() || text.charAt(at) != close) {
          tokens.add(new Token(kind, value.toString(), start));
          return;
        }
        ++at;
      }
      value.append(c);
    }
    noteOpen(start, Character.toString(close));
  }

  private void noteOpen(int position, String what) {
    openPosition = position;
    expected = what;
  }

  /** A word may hold dots (STDEV.S, and the names of user functions), but does not end in one. */
  private void word() {
    int start = at;
    while (at < text.length() && (Names.continuesWord(text.charAt(at)) || isInnerDot())) ++at;
    tokens.add(new Token(Kind.WORD, text.substring(start, at), start));
  }

  private boolean isInnerDot() {
    return text.charAt(at) == '.' && at + 1 < text.length() && Names.continuesWord(text.charAt(at + 1));
  }

  private void number() {
    int start = at;
    while (at < text.length() && (Names.isDigit(text.charAt(at)) || text.charAt(at) == '.')) ++at;
    if (at < text.length() && (text.charAt(at) == 'e' || text.charAt(at) == 'E')) {
      int exponent = at + 1;
      if (exponent < text.length() && (text.charAt(exponent) == '+' || text.charAt(exponent) == '-'))
        ++exponent;
      if (exponent < text.length() && Names.isDigit(text.charAt(exponent))) {
        at = exponent;
        while (at < text.length() && Names.isDigit(text.charAt(at))) ++at;
      }
    }
    tokens.add(new Token(Kind.NUMBER, text.substring(start, at), start));
  }
}

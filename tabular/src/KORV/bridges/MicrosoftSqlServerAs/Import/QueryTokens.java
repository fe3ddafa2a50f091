package KORV.bridges.MicrosoftSqlServerAs.Import;

import java.util.ArrayList;
import java.util.List;

/** The tokens of a query. What its languages have in common is read here, the rest by a class of each. */
abstract class QueryTokens {
  enum Kind { WORD, QUOTED, TEXT, NUMBER, SIGN, END }

  /** A token; `value` has quotes and brackets removed and doubled ones undone. QUOTED is never a keyword. */
  record Token(Kind kind, String value) {
    boolean isSign(char sign) {
      return kind == Kind.SIGN && value.charAt(0) == sign;
    }

    /** To the letter. */
    boolean isWord(String word) {
      return kind == Kind.WORD && value.equals(word);
    }

    /** In any letter case. */
    boolean isKeyword(String word) {
      return kind == Kind.WORD && value.equalsIgnoreCase(word);
    }

    boolean isName() {
      return kind == Kind.WORD || kind == Kind.QUOTED;
    }
  }

  private static final Token END = new Token(Kind.END, "");

  protected final String text;
  protected int at;
  private final List<Token> tokens = new ArrayList<>();

  protected QueryTokens(String text) {
    this.text = text;
  }

  final int size() {
    return tokens.size();
  }

  /** The token at a place; a token of kind END outside the query. */
  final Token get(int place) {
    return place < 0 || place >= tokens.size() ? END : tokens.get(place);
  }

  /** Reads what is only this language's own at the place, and goes behind it; false when nothing is. */
  protected abstract boolean readOwn(char c);

  /** Whether a word goes on with a character that is not one of every language's words. */
  protected abstract boolean continuesWord(char c);

  protected final void readAll() {
    while (at < text.length()) {
      char c = text.charAt(at);
      if (Names.isBlank(c)) {
        ++at;
      } else if (!readOwn(c)) {
        readCommon(c);
      }
    }
  }

  private void readCommon(char c) {
    if (Names.startsWord(c)) {
      word();
    } else if (Names.isDigit(c)) {
      number();
    } else {
      add(Kind.SIGN, text.substring(at, ++at));
    }
  }

  protected final void add(Kind kind, String value) {
    tokens.add(new Token(kind, value));
  }

  protected final void skipLine() {
    while (at < text.length() && text.charAt(at) != '\n' && text.charAt(at) != '\r') ++at;
  }

  protected final void word() {
    int start = at++;
    while (
        at < text.length() && (Names.continuesWord(text.charAt(at)) || continuesWord(text.charAt(at))))
      ++at;
    add(Kind.WORD, text.substring(start, at));
  }

  private void number() {
    int start = at++;
    while (at < text.length() && (Names.continuesWord(text.charAt(at)) || text.charAt(at) == '.')) ++at;
    add(Kind.NUMBER, text.substring(start, at));
  }

  /** The value of what is enclosed from the mark at the place to `close`; the text's end closes it too. */
  protected final String enclosed(char close) {
    StringBuilder value = new StringBuilder();
    for (++at; at < text.length(); ++at) {
      if (text.charAt(at) == close) {
        if (at + 1 >= text.length() || text.charAt(at + 1) != close) break;
        ++at;
      }
      value.append(text.charAt(at));
    }
    ++at;
    return value.toString();
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import;

/** Comparison of names: letter case is folded for A to Z only, as everywhere in a model. */
final class Names {
  private Names() {}

  static String fold(String name) {
    int i = 0;
    while (i < name.length() && !isUpper(name.charAt(i))) ++i;
    if (i == name.length()) return name;
    StringBuilder folded = new StringBuilder(name);
    for (; i < folded.length(); ++i) {
      if (isUpper(folded.charAt(i))) folded.setCharAt(i, (char) (folded.charAt(i) + ('a' - 'A')));
    }
    return folded.toString();
  }

  static boolean same(String a, String b) {
    return fold(a).equals(fold(b));
  }

  /** A letter or underscore, or any character above ASCII that can be part of a word. */
  static boolean startsWord(char c) {
    return c == '_' || (c < 0x80 ? isUpper(c) || c >= 'a' && c <= 'z' : !isBlank(c));
  }

  static boolean continuesWord(char c) {
    return startsWord(c) || isDigit(c);
  }

  static boolean isDigit(char c) {
    return c >= '0' && c <= '9';
  }

  static boolean isBlank(char c) {
    return c <= ' ' || Character.isWhitespace(c) || Character.isSpaceChar(c) || c == '\uFEFF'
        || c == '\u200B';
  }

  private static boolean isUpper(char c) {
    return c >= 'A' && c <= 'Z';
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.text;

/** Comparison of names, which ignores letter case in every script, and the characters of words. */
public final class Names {
  private static final int DOTTED_CAPITAL_I = 0x130;
  private static final int DOTLESS_SMALL_I = 0x131;

  private Names() {}

  /** A name as a key for look-ups: Unicode's simple case folding, character by character. */
  public static String fold(String name) {
    int i = 0;
    while (i < name.length() && name.charAt(i) < 0x80 && !isUpper(name.charAt(i))) ++i;
    if (i == name.length()) return name;
    StringBuilder folded = new StringBuilder(name.length()).append(name, 0, i);
    name.codePoints().skip(i).forEach(c -> folded.appendCodePoint(foldedCharacter(c)));
    return folded.toString();
  }

  /**
   * By way of the capital, because several small letters may share one (σ and ς). The two letters I of
   * Turkish equal nothing but themselves.
   */
  private static int foldedCharacter(int c) {
    if (c == DOTTED_CAPITAL_I || c == DOTLESS_SMALL_I) return c;
    return Character.toLowerCase(Character.toUpperCase(c));
  }

  public static boolean same(String a, String b) { return fold(a).equals(fold(b)); }

  /** A letter or underscore, or any character above ASCII that can be part of a word. */
  public static boolean startsWord(char c) {
    return c == '_' || (c < 0x80 ? isUpper(c) || c >= 'a' && c <= 'z' : !isBlank(c));
  }

  public static boolean continuesWord(char c) { return startsWord(c) || isDigit(c); }

  public static boolean isDigit(char c) { return c >= '0' && c <= '9'; }

  public static boolean isBlank(char c) {
    return c <= ' ' || Character.isWhitespace(c) || Character.isSpaceChar(c) || c == '\uFEFF'
        || c == '\u200B';
  }

  private static boolean isUpper(char c) { return c >= 'A' && c <= 'Z'; }
}

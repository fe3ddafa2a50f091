package KORV.bridges.MicrosoftSqlServerAs.Import;

/** The tokens of a query in the M language: `Table.RenameColumns` is one word, #"Changed Type" is quoted. */
final class MTokens extends QueryTokens {
  MTokens(String text) {
    super(text);
    readAll();
  }

  @Override
  protected boolean readOwn(char c) {
    if (text.startsWith("//", at)) {
      skipLine();
    } else if (text.startsWith("/*", at)) {
      int end = text.indexOf("*/", at + 2);
      at = end < 0 ? text.length() : end + 2;
    } else if (c == '"') {
      add(Kind.TEXT, unescape(enclosed('"')));
    } else if (text.startsWith("#\"", at)) {
      ++at;
      add(Kind.QUOTED, unescape(enclosed('"')));
    } else if (c == '#') {
      word();
    } else {
      return false;
    }
    return true;
  }

  @Override
  protected boolean continuesWord(char c) {
    return c == '.';
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

package KORV.bridges.MicrosoftSqlServerAs.Import;

/** The tokens of an SQL query. */
final class SqlTokens extends QueryTokens {
  SqlTokens(String text) {
    super(text);
    readAll();
  }

  @Override
  protected boolean readOwn(char c) {
    if (text.startsWith("--", at)) {
      skipLine();
    } else if (text.startsWith("/*", at)) {
      skipComment();
    } else if (c == '\'') {
      add(Kind.TEXT, enclosed('\''));
    } else if (c == '"' || c == '`') {
      add(Kind.QUOTED, enclosed(c));
    } else if (c == '[') {
      add(Kind.QUOTED, enclosed(']'));
    } else if (c == '@' || c == '#') {
      word();
    } else {
      return false;
    }
    return true;
  }

  @Override
  protected boolean continuesWord(char c) {
    return "@#$".indexOf(c) >= 0;
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
}

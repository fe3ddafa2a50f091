package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/** A place in a query behind which not all columns are known. */
public record MFault(String cause, String query, String text, int place) {
  /** The line and column, from 1 and in characters as an editor counts them, and the cause. */
  String describe() {
    int line = 1;
    int begin = 0;
    for (int i = text.indexOf('\n'); i >= 0 && i < place; i = text.indexOf('\n', i + 1)) {
      ++line;
      begin = i + 1;
    }
    int column = text.codePointCount(begin, Math.max(begin, Math.min(place, text.length()))) + 1;
    String where = query.isEmpty() ? "" : " of the " + query;
    return "line " + line + ", column " + column + where + ": " + cause;
  }
}

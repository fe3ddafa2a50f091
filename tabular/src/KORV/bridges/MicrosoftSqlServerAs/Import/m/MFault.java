package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/** A place in a query behind which not all columns are known: the step's name, and line and column from 1. */
public record MFault(String text) {
  static MFault at(String cause, String query, String text, int place) {
    int line = 1;
    int begin = 0;
    for (int i = text.indexOf('\n'); i >= 0 && i < place; i = text.indexOf('\n', i + 1)) {
      ++line;
      begin = i + 1;
    }
    String where = query.isEmpty() ? "" : " of the shared expression '" + query + "'";
    return new MFault("line " + line + ", column " + (place - begin + 1) + where + ": " + cause);
  }
}

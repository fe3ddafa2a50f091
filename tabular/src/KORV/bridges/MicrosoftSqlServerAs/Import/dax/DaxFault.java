package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

/** What is wrong at a place of an expression, the place counted in characters from 0. */
record DaxFault(int place, String text) {
  /** As "line 1, column 12: text", columns counted as editors do. */
  String in(String expression) {
    int end = Math.min(place, expression.length());
    int lineStart = expression.lastIndexOf('\n', end - 1) + 1;
    long line = expression.substring(0, lineStart).chars().filter(c -> c == '\n').count() + 1;
    return "line " + line + ", column " + (expression.codePointCount(lineStart, end) + 1) + ": " + text;
  }
}

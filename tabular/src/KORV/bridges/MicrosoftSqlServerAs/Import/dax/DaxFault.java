package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

/** What is wrong at a place of an expression, the place counted in characters from 0. */
record DaxFault(int place, String text) {
  /** As "line 1, column 12: text". */
  String in(DaxExpression expression) { return expression.places().of(place) + ": " + text; }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/** Tells that a text is no query, and where. */
final class MSyntaxFault extends Exception {
  private static final long serialVersionUID = 1L;
  final int at;

  MSyntaxFault(String message, int at) {
    super(message);
    this.at = at;
  }
}

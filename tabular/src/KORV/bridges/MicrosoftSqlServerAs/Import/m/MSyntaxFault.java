package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/** Tells that a text is no query, and where. */
final class MSyntaxFault extends Exception {
  private static final long serialVersionUID = 1L;
  final int at;
  /** Whether the text ends where more must follow. */
  final boolean early;

  MSyntaxFault(String message, int at) { this(message, at, false); }

  MSyntaxFault(String message, int at, boolean early) {
    super(message);
    this.at = at;
    this.early = early;
  }
}

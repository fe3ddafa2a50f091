package KORV.bridges.MicrosoftSqlServerAs.Import;

/** What ends an import: an identifier, the place in the definition and the cause, for the user to read. */
final class ImportException extends Exception {
  private static final long serialVersionUID = 1;

  /** The input cannot be read or the output cannot be written. */
  static final String FILE = "TAVTAB_F0001";
  /** The input is no JSON text. */
  static final String SYNTAX = "TAVTAB_F0002";
  /** The input is JSON, but not a tabular definition that can be imported. */
  static final String DEFINITION = "TAVTAB_F0003";
  /** The definition needs more memory than Java may use. */
  static final String MEMORY = "TAVTAB_F0004";
  /** A defect of the importer. */
  static final String INTERNAL = "TAVTAB_F0005";
  /** The options name no input. */
  static final String OPTION = "TAVTAB_F0006";

  private final String identifier;
  private final int line;
  private final int column;

  /** Lines and columns count from 1; line 0 means that the fault has no place. */
  ImportException(String identifier, int line, int column, String cause) {
    super(cause);
    this.identifier = identifier;
    this.line = line;
    this.column = column;
  }

  /** One line: "[identifier] path:line:column: cause". */
  String describe(String path) {
    String place = line > 0 ? path + ":" + line + ":" + column : path;
    return "[" + identifier + "] " + place + ": " + getMessage().replaceAll("\\s+", " ");
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.json;

/** What ends an import: an identifier, the place in the definition and the cause, for the user to read. */
public final class ImportException extends Exception {
  private static final long serialVersionUID = 1;

  /** The input cannot be read or the output cannot be written. */
  public static final String FILE = "TAVTAB_F0001";
  /** The input is no JSON text. */
  static final String SYNTAX = "TAVTAB_F0002";
  /** The input is JSON, but not a tabular definition that can be imported. */
  public static final String DEFINITION = "TAVTAB_F0003";
  /** The definition needs more memory than Java may use. */
  public static final String MEMORY = "TAVTAB_F0004";
  /** A defect of the importer. */
  public static final String INTERNAL = "TAVTAB_F0005";
  /** The options name no input. */
  public static final String OPTION = "TAVTAB_F0006";

  private final String identifier;
  private final int line;
  private final int column;

  /** Lines and columns count from 1; line 0 means that the fault has no place. */
  public ImportException(String identifier, int line, int column, String cause) {
    super(cause);
    this.identifier = identifier;
    this.line = line;
    this.column = column;
  }

  /** One line: "[identifier] path:line:column: cause". */
  public String describe(String path) {
    String place = line > 0 ? path + ":" + line + ":" + column : path;
    return "[" + identifier + "] " + place + ": " + getMessage().replaceAll("\\s+", " ");
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Escapes;
import java.io.PrintStream;

/**
 * Messages for the program that started the importer: "LEVEL TAB IDENTIFIER TAB text", one a line, each sent
 * as soon as it is made.
 */
final class MessageOutput {
  private final PrintStream out;

  MessageOutput(PrintStream out) { this.out = out; }

  void status(String identifier, String text) { write("STATUS", identifier, text); }

  void warning(String identifier, String text) { write("WARNING", identifier, text); }

  void error(String identifier, String text) { write("ERROR", identifier, text); }

  private void write(String level, String identifier, String text) {
    out.print(level + "\t" + identifier + "\t" + Escapes.escape(text) + "\n");
    out.flush();
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import;

import java.io.OutputStream;
import java.io.PrintStream;
import java.nio.file.Path;

/**
 * Imports many definitions, for tests that would otherwise start Java for each. The arguments are pairs of an
 * option file and a file to write; there is no such file of a definition that cannot be read.
 */
public final class ImportEach {
  private ImportEach() {}

  public static void main(String[] arguments) {
    MessageOutput none = new MessageOutput(new PrintStream(OutputStream.nullOutputStream()));
    for (int i = 0; i + 1 < arguments.length; i += 2)
      MicrosoftSqlServerAsImport.run(arguments[i], Path.of(arguments[i + 1]), none);
  }
}

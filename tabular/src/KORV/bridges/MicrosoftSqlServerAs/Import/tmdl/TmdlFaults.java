package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import java.util.function.Consumer;

/** What could not be read, with its place, told as it is found. Of many faults the first are told. */
public final class TmdlFaults {
  /** Where the texts go. */
  public interface Output {
    void lost(String text);
    void warn(String text);
  }

  private static final int MOST_OF_FILE = 10;
  private static final int MOST = 200;

  private final Output output;
  private String file = "";
  private final Count losses = new Count();
  private final Count warnings = new Count();

  private static final class Count {
    private int ofFile;
    private int all;
  }

  public TmdlFaults(Output output) { this.output = output; }

  /** The faults to come are of this file. */
  void enter(String path) {
    file = path;
    losses.ofFile = 0;
    warnings.ofFile = 0;
  }

  String file() { return file; }

  /** Something of the definition is lost. Lines and columns count from 0; a line below 0 is no place. */
  void lose(int line, int column, String cause) {
    output(losses, place(line, column) + cause, output::lost);
  }

  /** Nothing is lost, but may be missing. */
  void warn(int line, int column, String cause) {
    output(warnings, place(line, column) + cause, output::warn);
  }

  private String place(int line, int column) {
    return line < 0 ? file + ": " : file + ":" + (line + 1) + ":" + (column + 1) + ": ";
  }

  private void output(Count count, String text, Consumer<String> out) {
    if (count.all > MOST || count.ofFile > MOST_OF_FILE) return;
    ++count.all;
    ++count.ofFile;
    boolean more = count.all > MOST || count.ofFile > MOST_OF_FILE;
    out.accept(more ? file + ": more faults, which are not listed" : text);
  }
}

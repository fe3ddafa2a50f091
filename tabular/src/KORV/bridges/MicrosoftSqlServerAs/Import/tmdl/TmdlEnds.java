package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/**
 * How the files of a folder end. Whoever writes all of them ends all in the same way, most in an empty line:
 * one that does not may be cut off between two lines.
 */
final class TmdlEnds {
  /** Below so many there is no telling what is usual. */
  private static final int LEAST = 3;

  private final List<Path> others = new ArrayList<>();
  private int empty;

  void add(Path file, String text) {
    int end = text.stripTrailing().length();
    long lineEnds = text.substring(end).chars().filter(c -> c == '\n').count();
    if (lineEnds > 1) {
      ++empty;
    } else if (lineEnds == 1 && end > 0) {
      others.add(file);
    }
  }

  void tell(TmdlFaults faults) {
    if (empty < LEAST || 2 * others.size() > empty) return;
    for (Path file : others) {
      faults.enter(file.toString());
      faults.warn(-1, 0, "the file does not end in an empty line as most of the others do; it may be cut off");
    }
  }
}

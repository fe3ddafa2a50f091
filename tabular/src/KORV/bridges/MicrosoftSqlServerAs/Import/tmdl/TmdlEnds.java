package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Set;

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

  /** Tells of the files that end otherwise, and gives their paths. */
  Set<String> tell(TmdlFaults faults) {
    if (empty < LEAST || 2 * others.size() > empty) return Set.of();
    Set<String> told = new HashSet<>();
    for (Path file : others) {
      faults.enter(file.toString());
      faults.warn(-1, 0, "the file does not end in an empty line as most of the others do; it may be cut off");
      told.add(file.toString());
    }
    return told;
  }
}

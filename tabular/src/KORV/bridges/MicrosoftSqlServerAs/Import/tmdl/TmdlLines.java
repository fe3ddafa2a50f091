package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import java.util.Arrays;

/** The lines of a text with their depth. Lines count from 0 here. */
final class TmdlLines {
  private static final int USUAL_UNIT = 4;

  private final String text;
  private int[] starts = new int[64];
  private int[] firsts = new int[64];
  private int[] ends = new int[64];
  private int count;
  /** So many blanks are one level where lines begin with blanks. */
  private final int unit;
  private boolean tabs;

  TmdlLines(String text) {
    this.text = text;
    for (int start = 0; start < text.length();) {
      int end = text.indexOf('\n', start);
      int next = end < 0 ? text.length() : end + 1;
      if (end < 0) end = text.length();
      if (end > start && text.charAt(end - 1) == '\r') --end;
      add(start, end);
      start = next;
    }
    unit = findUnit();
  }

  private void add(int start, int end) {
    if (count == starts.length) {
      starts = Arrays.copyOf(starts, 2 * count);
      firsts = Arrays.copyOf(firsts, 2 * count);
      ends = Arrays.copyOf(ends, 2 * count);
    }
    int first = start;
    while (first < end && isBlank(text.charAt(first))) ++first;
    starts[count] = start;
    firsts[count] = first;
    ends[count++] = end;
  }

  /** The least depth of a text without tabs; where there are tabs, blanks are the exception. */
  private int findUnit() {
    int least = Integer.MAX_VALUE;
    for (int i = 0; i < count; ++i) {
      if (isBlank(i) || firsts[i] == starts[i]) continue;
      tabs |= text.charAt(starts[i]) == '\t';
      least = Math.min(least, firsts[i] - starts[i]);
    }
    return tabs || least == Integer.MAX_VALUE ? USUAL_UNIT : least;
  }

  static boolean isBlank(char c) { return c == ' ' || c == '\t'; }

  int count() { return count; }

  boolean isBlank(int line) { return firsts[line] == ends[line]; }

  /** A tab is a level, and so are as many blanks as the text has for one. */
  int level(int line) {
    int level = 0;
    int blanks = 0;
    for (int i = starts[line]; i < firsts[line]; ++i) {
      if (text.charAt(i) == '\t') {
        ++level;
      } else if (++blanks == unit) {
        ++level;
        blanks = 0;
      }
    }
    return level;
  }

  /** How many characters stand before the first that is not blank. */
  int indentation(int line) { return firsts[line] - starts[line]; }

  /** How much of the indentation is depth: in a text with tabs, blanks behind them belong to an expression. */
  int edge(int line) {
    int edge = starts[line];
    while (edge < firsts[line] && (text.charAt(edge) == '\t' || !tabs)) ++edge;
    return edge == starts[line] ? indentation(line) : edge - starts[line];
  }

  /** The line without the blanks at its ends. */
  String content(int line) {
    int end = ends[line];
    while (end > firsts[line] && isBlank(text.charAt(end - 1))) --end;
    return text.substring(firsts[line], end);
  }

  /** Whether the line holds these characters and nothing else but blanks. */
  boolean holdsOnly(int line, String what) {
    return text.startsWith(what, firsts[line]) && firsts[line] + what.length() <= ends[line]
        && content(line).length() == what.length();
  }

  /** Appends the line without at most so many of the blanks at its beginning. */
  void appendFrom(int line, int edge, StringBuilder out) {
    out.append(text, Math.min(starts[line] + edge, firsts[line]), ends[line]);
  }

  /** Whether the text ends inside a line. */
  boolean endsInLine() {
    return !text.isEmpty() && text.charAt(text.length() - 1) != '\n';
  }
}

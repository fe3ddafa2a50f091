package KORV.bridges.MicrosoftSqlServerAs.Import.dax;

/**
 * Lines and columns of a text, as editors count them. What stands at a mark is counted once, so that a long text
 * with many faults is not counted through for each.
 */
final class DaxPlaces {
  private static final int STEP = 256;

  private final String text;
  private final int[] lines; // line ends before every STEP-th character
  private final int[] columns; // characters on its line before it

  DaxPlaces(String text) {
    this.text = text;
    lines = new int[text.length() / STEP + 1];
    columns = new int[lines.length];
    int[] at = {0, 0};
    for (int mark = 1; mark < lines.length; ++mark) {
      pass((mark - 1) * STEP, mark * STEP, at);
      lines[mark] = at[0];
      columns[mark] = at[1];
    }
  }

  /** As "line 1, column 12". */
  String of(int place) {
    int end = Math.min(place, text.length());
    int mark = end / STEP;
    int[] at = {lines[mark], columns[mark]};
    pass(mark * STEP, end, at);
    return "line " + (at[0] + 1) + ", column " + (at[1] + 1);
  }

  /** Goes on counting lines and columns; two halves of one character are one. */
  private void pass(int from, int to, int[] at) {
    for (int i = from; i < to; ++i) {
      char c = text.charAt(i);
      boolean secondHalf = i > 0 && Character.isSurrogatePair(text.charAt(i - 1), c);
      if (c == '\n') ++at[0];
      at[1] = c == '\n' ? 0 : secondHalf ? at[1] : at[1] + 1;
    }
  }
}

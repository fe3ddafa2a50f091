package KORV.bridges.MicrosoftSqlServerAs.Import.m;

/**
 * How many steps one query may take. Tables that are combined with themselves over and over would otherwise
 * cost far more than their text is long.
 */
public final class Budget {
  private static final int LEAST = 50_000;
  private static final int PER_CHARACTER = 20;
  private long left;

  public Budget(int textLength) { left = LEAST + (long) PER_CHARACTER * textLength; }

  boolean take(long steps) {
    left -= steps;
    return left >= 0;
  }

  /** For a text that the query brings with it. */
  void add(int textLength) { left += (long) PER_CHARACTER * textLength; }

  boolean isSpent() { return left < 0; }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.m;

import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.function.IntPredicate;

/** Functions of texts, as far as their arguments are constant: names of columns are made with them. */
final class MTexts {
  /** What a function makes of constant arguments; null when that depends on more than them. */
  private interface Constant {
    MValue of(List<String> arguments);
  }

  private record Known(int arguments, Constant constant) {}

  private static final Map<String, Known> FUNCTIONS = new HashMap<>();
  private static final IntPredicate BLANK = c -> Character.isWhitespace(c) || c == 0xA0;

  static {
    add("Text.Upper", 1, a -> MValue.text(mapped(a.get(0), true)));
    add("Text.Lower", 1, a -> MValue.text(mapped(a.get(0), false)));
    add("Text.Proper", 1, a -> proper(a.get(0)));
    add("Text.Clean", 1, a -> MValue.text(without(a.get(0), Character::isISOControl)));
    add("Text.Trim", 1, a -> MValue.text(trimmed(a.get(0), true, true)));
    add("Text.TrimStart", 1, a -> MValue.text(trimmed(a.get(0), true, false)));
    add("Text.TrimEnd", 1, a -> MValue.text(trimmed(a.get(0), false, true)));
    add("Text.Length", 1, a -> MValue.number(Integer.toString(a.get(0).length())));
    add("Text.Start", 2, a -> cut(a.get(0), 0, place(a.get(1))));
    add("Text.End", 2, a -> end(a.get(0), place(a.get(1))));
    add("Text.Middle", 3, a -> cut(a.get(0), place(a.get(1)), place(a.get(2))));
    add("Text.Range", 3, a -> cut(a.get(0), place(a.get(1)), place(a.get(2))));
    add("Text.Remove", 2, a -> chosen(a.get(0), a.get(1), false));
    add("Text.Select", 2, a -> chosen(a.get(0), a.get(1), true));
    add("Text.Replace", 3,
        a -> a.get(1).isEmpty() ? null : MValue.text(a.get(0).replace(a.get(1), a.get(2))));
    add("Text.BeforeDelimiter", 2, a -> beside(a.get(0), a.get(1), true));
    add("Text.AfterDelimiter", 2, a -> beside(a.get(0), a.get(1), false));
    add("Text.StartsWith", 2, a -> MValue.logical(a.get(0).startsWith(a.get(1))));
    add("Text.EndsWith", 2, a -> MValue.logical(a.get(0).endsWith(a.get(1))));
    add("Text.Contains", 2, a -> MValue.logical(a.get(0).contains(a.get(1))));
  }

  private MTexts() {}

  private static void add(String name, int arguments, Constant constant) {
    FUNCTIONS.put(name, new Known(arguments, constant));
  }

  static Iterable<String> names() { return FUNCTIONS.keySet(); }

  /** Further arguments are cultures and comparers, which change the meaning. */
  static MValue apply(MCall call) {
    Known known = FUNCTIONS.get(call.name);
    if (call.arguments.size() != known.arguments) return null;
    for (MValue argument : call.arguments) {
      if (!argument.is(MValue.Kind.TEXT) && !argument.is(MValue.Kind.NUMBER)) return null;
    }
    if (!call.argument(0).is(MValue.Kind.TEXT) || !call.budget().take(1 + call.text(0).length() / 64))
      return null;
    return known.constant.of(call.arguments.stream().map(argument -> argument.text).toList());
  }

  /** Letter by letter: what whole words become depends on the language. */
  private static String mapped(String text, boolean upper) {
    StringBuilder made = new StringBuilder(text.length());
    text.codePoints()
        .map(c -> upper ? Character.toUpperCase(c) : Character.toLowerCase(c))
        .forEach(made::appendCodePoint);
    return made.toString();
  }

  /** Only words of letters between blanks: where else a word begins is not told. */
  private static MValue proper(String text) {
    StringBuilder made = new StringBuilder(text.length());
    for (int i = 0; i < text.length(); ++i) {
      char c = text.charAt(i);
      if (!Character.isLetter(c) && c != ' ') return null;
      boolean begins = i == 0 || text.charAt(i - 1) == ' ';
      made.append(begins ? Character.toUpperCase(c) : Character.toLowerCase(c));
    }
    return MValue.text(made.toString());
  }

  private static String without(String text, IntPredicate unwanted) {
    StringBuilder made = new StringBuilder(text.length());
    text.codePoints().filter(unwanted.negate()).forEach(made::appendCodePoint);
    return made.toString();
  }

  /** Several characters come as a list. */
  private static MValue chosen(String text, String character, boolean kept) {
    if (character.length() != 1) return null;
    return MValue.text(without(text, c -> c == character.charAt(0) != kept));
  }

  private static String trimmed(String text, boolean start, boolean end) {
    int from = 0;
    int to = text.length();
    while (start && from < to && BLANK.test(text.charAt(from))) ++from;
    while (end && to > from && BLANK.test(text.charAt(to - 1))) --to;
    return text.substring(from, to);
  }

  /** -1 for what is no place in a text. */
  private static int place(String number) {
    return number.matches("[0-9]{1,8}") ? Integer.parseInt(number) : -1;
  }

  private static MValue cut(String text, int from, int count) {
    if (from < 0 || count < 0 || from > text.length()) return null;
    return MValue.text(text.substring(from, Math.min(text.length(), from + count)));
  }

  private static MValue end(String text, int count) {
    return count < 0 ? null : MValue.text(text.substring(Math.max(0, text.length() - count)));
  }

  private static MValue beside(String text, String delimiter, boolean before) {
    int at = text.indexOf(delimiter);
    if (delimiter.isEmpty()) return null;
    if (at < 0) return MValue.text(before ? text : "");
    return MValue.text(before ? text.substring(0, at) : text.substring(at + delimiter.length()));
  }

  /** Only whole numbers: how others are written depends on the culture. */
  static MValue from(MCall call) {
    MValue value = call.argument(0);
    if (value.is(MValue.Kind.TEXT)) return value;
    boolean whole = value.is(MValue.Kind.NUMBER) && value.text.matches("[1-9][0-9]*|0");
    return whole && call.arguments.size() == 1 ? MValue.text(value.text) : null;
  }

  static MValue combine(MCall call) {
    List<String> texts = call.argument(0).isWholeList() ? call.texts(0) : null;
    if (texts == null || call.has(1) && call.text(1) == null) return null;
    return MValue.text(String.join(call.has(1) ? call.text(1) : "", texts));
  }
}

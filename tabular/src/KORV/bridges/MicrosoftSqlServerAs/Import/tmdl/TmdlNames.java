package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import java.util.ArrayList;
import java.util.List;

/** Names and values as they are written: bare, in single quotes that are doubled inside, or in double ones. */
final class TmdlNames {
  private TmdlNames() {}

  /** Where the name that begins at `from` with a quote ends, behind its closing quote; -1 without one. */
  static int endOfQuoted(String text, int from) {
    for (int i = text.indexOf('\'', from + 1); i >= 0; i = text.indexOf('\'', i + 2)) {
      if (i + 1 == text.length() || text.charAt(i + 1) != '\'') return i + 1;
    }
    return -1;
  }

  /** The name in quotes between two places. */
  static String unquoted(String text, int from, int end) {
    return text.substring(from + 1, end - 1).replace("''", "'");
  }

  /** The names of a reference, which dots part; null when it is none. */
  static List<String> reference(String text) {
    List<String> names = new ArrayList<>(2);
    int at = 0;
    while (true) {
      int end;
      if (at < text.length() && text.charAt(at) == '\'') {
        end = endOfQuoted(text, at);
        if (end < 0) return null;
        names.add(unquoted(text, at, end));
      } else {
        end = text.indexOf('.', at);
        if (end < 0) end = text.length();
        names.add(text.substring(at, end));
      }
      if (end == text.length()) return names;
      if (text.charAt(end) != '.') return null;
      at = end + 1;
    }
  }

  /** The name that a value is, which needs no quotes even if it holds dots. */
  static String name(String text) {
    boolean quoted = text.startsWith("'") && endOfQuoted(text, 0) == text.length();
    return quoted ? unquoted(text, 0, text.length()) : text;
  }

  /** A value without the double quotes around it, if those inside are doubled. */
  static String value(String text) {
    int last = text.length() - 1;
    if (last < 1 || text.charAt(0) != '"' || text.charAt(last) != '"') return text;
    for (int i = text.indexOf('"', 1); i < last; i = text.indexOf('"', i + 2))
      if (text.charAt(i + 1) != '"' || i + 1 == last) return text;
    return text.substring(1, last).replace("\"\"", "\"");
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.Collection;
import java.util.HashMap;
import java.util.Map;

/**
 * Names by spellings near to theirs: one letter more, less, other or swapped, other case, blanks or signs.
 */
final class Spellings {
  /** Longer names are found only by their letters and digits. */
  private static final int LONGEST = 60;
  private static final int SHORTEST = 3;

  private final Map<String, String> names = new HashMap<>();

  Spellings(Collection<String> all) {
    for (String name : all) names.putIfAbsent(letters(name), name);
    for (String name : all) {
      String letters = letters(name);
      if (hasVariants(letters))
        for (int i = 0; i < letters.length(); ++i) names.putIfAbsent(without(letters, i), name);
    }
  }

  /** Null when no name is near. */
  String nearest(String name) {
    String letters = letters(name);
    String found = names.get(letters);
    if (!hasVariants(letters)) return found;
    for (int i = 0; found == null && i < letters.length(); ++i) found = names.get(without(letters, i));
    return found;
  }

  private static boolean hasVariants(String letters) {
    return letters.length() > SHORTEST && letters.length() <= LONGEST;
  }

  private static String without(String letters, int place) {
    return letters.substring(0, place) + letters.substring(place + 1);
  }

  private static String letters(String name) {
    StringBuilder letters = new StringBuilder();
    Names.fold(name).codePoints().filter(Character::isLetterOrDigit).forEach(letters::appendCodePoint);
    return letters.isEmpty() ? name : letters.toString();
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxExpression;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.JsonReader;
import KORV.bridges.MicrosoftSqlServerAs.Import.m.MQuery;
import java.io.IOException;
import java.util.ArrayDeque;
import java.util.EnumSet;
import java.util.Set;

/**
 * Reads one text line by line into the objects of a definition. A line belongs to the nearest line above it that
 * is less deep. A line that cannot be read is told and passed over with everything that is deeper.
 */
final class TmdlParser {
  /** Real definitions nest six deep; more than this is a damaged file. */
  private static final int MAX_DEPTH = 40;
  private static final int NONE = Integer.MAX_VALUE;
  /** What is an expression in DAX. */
  private static final Set<TmdlKind> DAX = EnumSet.of(TmdlKind.COLUMN, TmdlKind.MEASURE, TmdlKind.CALCULATION_ITEM,
      TmdlKind.FORMAT_STRING, TmdlKind.DETAIL_ROWS, TmdlKind.DEFAULT_DETAIL_ROWS, TmdlKind.NO_SELECTION,
      TmdlKind.MANY_SELECTED, TmdlKind.TABLE_PERMISSION, TmdlKind.FUNCTION);

  /** An object that lines may belong to, and how deep the line stands that declares it. */
  private record Owner(TmdlObject object, int level) {}

  private final TmdlLines lines;
  private final TmdlObject root;
  private final TmdlObject database;
  private final TmdlFaults faults;
  private final ArrayDeque<Owner> owners = new ArrayDeque<>();
  private final StringBuilder description = new StringBuilder();
  private int descriptionLine = -1;
  /** Lines deeper than this belong to something that is lost. */
  private int lost = NONE;
  /** No closing fence stands behind this line. */
  private int lastFence = NONE;
  private int next;
  /** Whether the lines are those of a script, whose objects replace what there was. */
  private boolean inScript;

  private TmdlParser(String text, TmdlObject root, TmdlFaults faults) {
    lines = new TmdlLines(text);
    this.root = root;
    this.faults = faults;
    database = root.part(TmdlKind.DATABASE, "");
  }

  /** Adds what a text holds to the objects below `root`. */
  static void parse(String text, TmdlObject root, TmdlFaults faults) {
    TmdlParser parser = new TmdlParser(text, root, faults);
    parser.owners.push(new Owner(root, -1));
    while (parser.next < parser.lines.count()) parser.readLine(parser.next++);
    parser.dropDescription();
    if (text.isBlank()) faults.warn(-1, 0, "the file is empty");
    if (parser.lines.endsInLine())
      faults.warn(parser.lines.count() - 1, 0, "the last line has no end; the file may be cut off");
  }

  private void readLine(int line) {
    if (lines.isBlank(line)) return;
    int level = lines.level(line);
    String text = lines.content(line);
    if (level > lost) {
      skipFence(line, text);
      return;
    }
    lost = NONE;
    while (owners.peek().level >= level) owners.pop();
    inScript &= owners.size() > 1;
    if (text.startsWith("///")) {
      describe(line, text);
    } else if (!text.startsWith("//")) {
      new Statement(line, level, text).read();
    }
  }

  private void describe(int line, String text) {
    if (descriptionLine < 0) {
      descriptionLine = line;
    } else {
      description.append('\n');
    }
    description.append(text, text.startsWith("/// ") ? 4 : 3, text.length());
  }

  /** A description that nothing follows is lost. */
  private void dropDescription() {
    if (descriptionLine >= 0)
      faults.lose(descriptionLine, 0, "expected the object that this describes on the next line");
    descriptionLine = -1;
    description.setLength(0);
  }

  /** An expression in fences may hold lines that are not deep. */
  private void skipFence(int line, String text) {
    if (!text.endsWith("```") || !text.substring(0, text.length() - 3).stripTrailing().endsWith("=")) return;
    int close = findFence(line + 1);
    if (close >= 0) next = close + 1;
  }

  /** The next line that holds a fence alone; -1 when there is none. */
  private int findFence(int from) {
    if (from >= lastFence) return -1;
    for (int i = from; i < lines.count(); ++i)
      if (lines.holdsOnly(i, "```")) return i;
    lastFence = from;
    return -1;
  }

  /** A declaration or property: its line, and what is read of the lines below it. */
  private final class Statement {
    private final int line;
    private final int level;
    private final String text;
    private int at;

    Statement(int line, int level, String text) {
      this.line = line;
      this.level = level;
      this.text = text;
    }

    void read() {
      Owner owner = owners.peek();
      String word = takeWord();
      if (word.isEmpty()) {
        lose(0, "expected a property or an object");
        return;
      }
      skipBlanks();
      boolean reference = word.equalsIgnoreCase("ref") && at < text.length() && Character.isLetter(text.charAt(at));
      if (reference) {
        word = takeWord();
        skipBlanks();
      }
      TmdlKind kind = owner.object.kind.owned(word);
      if (starts(":") && !starts(":=") && !(kind != null && at + 1 == text.length())) {
        readProperty(owner.object, word);
      } else if (kind != null) {
        if (starts(":") && !starts(":=")) ++at;
        declare(owner.object, kind, reference);
      } else if (reference) {
        lose(0, "expected a kind of object behind 'ref', found '" + word + "'");
      } else if (starts("=") || starts(":=")) {
        readExpressionProperty(owner.object, word);
      } else if (at == text.length()) {
        readBareWord(owner.object, word);
      } else {
        lose(0, TmdlProperties.strange(owner.object, word));
      }
    }

    private boolean belongsTo(TmdlObject object, String word) {
      skipBlanks();
      boolean ends = at == text.length() || starts(":") || starts("=");
      if (object.kind.owned(word) != null) return true;
      return ends && TmdlProperties.isKnown(word);
    }

    private String takeWord() {
      int from = at;
      while (at < text.length()
          && (Character.isLetterOrDigit(text.charAt(at)) || text.charAt(at) == '_'))
        ++at;
      return text.substring(from, at);
    }

    private void skipBlanks() {
      while (at < text.length() && TmdlLines.isBlank(text.charAt(at))) ++at;
    }

    private boolean starts(String what) { return text.startsWith(what, at); }

    /** The line and everything below it that is deeper is passed over. */
    private void lose(int column, String cause) {
      faults.lose(line, lines.indentation(line) + column, cause);
      descriptionLine = -1;
      description.setLength(0);
      lost = level;
      skipFence(line, text);
    }

    // Declarations.

    private void declare(TmdlObject declaredIn, TmdlKind kind, boolean reference) {
      String name = kind.nameMember == null ? "" : takeName(kind);
      if (name == null) return;
      skipBlanks();
      int column = at;
      boolean assigned = starts("=") || starts(":=");
      boolean assignable = kind.defaultMember != null && !reference;
      if (at < text.length() && !(assigned && assignable)) {
        lose(column, "expected " + (assignable ? "'=' or " : "") + "the end of the line"
            + (kind.nameMember == null || assigned ? "" : "; a name with blanks stands in single quotes"));
        return;
      }
      if (owners.size() > MAX_DEPTH) {
        lose(0, "more than " + MAX_DEPTH + " levels of nesting");
        return;
      }
      if (assigned) at += starts("=") ? 1 : 2;
      TmdlObject object = open(declaredIn, kind, name, reference);
      owners.push(new Owner(object, level));
      if (assigned) readDefault(declaredIn, object, column);
      if (kind == TmdlKind.SCRIPT && isLast()) lose(0, "'" + text + "' has nothing below it");
    }

    /** The name, empty where there is none; null when the line is lost. */
    private String takeName(TmdlKind kind) {
      int from = at;
      if (starts("'")) {
        int end = TmdlNames.endOfQuoted(text, at);
        if (end < 0) {
          lose(at, "expected a single quote at the end of the name");
          return null;
        }
        at = end;
        return TmdlNames.unquoted(text, from, end);
      }
      while (at < text.length() && !TmdlLines.isBlank(text.charAt(at)) && text.charAt(at) != '=') ++at;
      if (starts("=") && at > from && text.charAt(at - 1) == ':') --at;
      boolean needed = kind.nameMember != null && kind != TmdlKind.DATABASE && kind != TmdlKind.MODEL
          && kind != TmdlKind.TRANSLATED_MODEL;
      if (at == from && needed) {
        lose(at, "expected the name of the " + kind.describe());
        return null;
      }
      return text.substring(from, at);
    }

    private TmdlObject open(TmdlObject declaredIn, TmdlKind kind, String name, boolean reference) {
      if (kind == TmdlKind.SCRIPT) {
        inScript = true;
        return new TmdlObject(kind, "");
      }
      TmdlObject object = ownerOf(declaredIn, kind).part(kind, name);
      if (object.line < 0 || !reference && !object.declared) object.place(faults.file(), line);
      if (reference) {
        // With lines below it is a part of the object; alone it says where in the order that stands.
        boolean part = hasLinesBelow();
        if (!part && object.order < 0) object.order = root.takeOrder();
        object.declared |= part;
        dropDescription();
      } else {
        if (inScript && object.declared) object.clear();
        object.declared = true;
        if (!name.isEmpty()) object.name = name;
      }
      if (descriptionLine >= 0) {
        String text = description.toString();
        descriptionLine = -1;
        description.setLength(0);
        tell(TmdlProperties.put(object, "description", text), 0);
      }
      return object;
    }

    /** The parts of a model stand beside it. */
    private TmdlObject ownerOf(TmdlObject declaredIn, TmdlKind kind) {
      if (kind == TmdlKind.DATABASE) return root;
      if (kind == TmdlKind.MODEL) return database;
      return declaredIn.kind.isTop() ? database.part(TmdlKind.MODEL, "") : declaredIn;
    }

    private boolean hasLinesBelow() {
      int below = nextLine();
      return below < lines.count() && lines.level(below) > level;
    }

    private int nextLine() {
      int below = next;
      while (below < lines.count() && lines.isBlank(below)) ++below;
      return below;
    }

    private void readDefault(TmdlObject owner, TmdlObject object, int column) {
      TmdlKind kind = object.kind;
      boolean isProperty = kind == TmdlKind.SOURCE;
      String value = takeText(isProperty);
      if (value == null) value = missedText(object, column);
      tellEnd(isProperty ? owner : object, value);
      Json made = switch (kind.form) {
        case WORD -> Json.plain(Json.Kind.STRING, TmdlProperties.word(TmdlNames.name(value)));
        case TEXT -> Json.plain(Json.Kind.STRING, TmdlNames.value(value));
        case JSON -> jsonOf(value);
        default -> Json.plain(Json.Kind.STRING, value);
      };
      if (made != null) tell(TmdlProperties.putOnce(object, kind.defaultMember, made), 0);
    }

    /** What is meant by nothing behind "=" and nothing as deep as it should be below. */
    private String missedText(TmdlObject object, int column) {
      int first = nextLine();
      int end = first;
      while (end < lines.count() && (lines.isBlank(end) || lines.level(end) > level && !startsKnown(object, end)))
        ++end;
      while (end > first && lines.isBlank(end - 1)) --end;
      if (end == first) {
        if (object.kind.form != TmdlKind.Form.TEXT) tellNothing(object.describe(), column);
        return "";
      }
      faults.warn(first, lines.indentation(first),
          "expected the text of " + object.describe() + " two levels deeper than its declaration, not one");
      String text = join(next, end, edgeOf(first, end), false);
      next = end;
      return text;
    }

    /** What may be meant in the middle of a file is cut off at its end. */
    private void tellNothing(String what, int column) {
      int place = lines.indentation(line) + column;
      if (isLast()) faults.lose(line, place, what + " has nothing behind '=', where the file ends");
      else faults.warn(line, place, what + " has nothing behind '='");
    }

    /** Tells of an expression that is the last of its file and has no end itself. */
    private void tellEnd(TmdlObject owner, String value) {
      if (value.isEmpty() || !isLast()) return;
      boolean early = isM(owner) ? MQuery.endsEarly(value) : isDax(owner) && DaxExpression.endsEarly(value);
      if (early)
        faults.lose(line, lines.indentation(line), "the file ends inside the expression that begins here");
    }

    private static boolean isM(TmdlObject owner) {
      boolean read = owner.kind == TmdlKind.PARTITION && owner.json.get("type").text.equals("m");
      return read || owner.kind == TmdlKind.EXPRESSION || owner.kind == TmdlKind.REFRESH_POLICY;
    }

    private static boolean isDax(TmdlObject owner) {
      boolean computed = owner.kind == TmdlKind.PARTITION && owner.json.get("type").text.equals("calculated");
      return computed || owner.kind == TmdlKind.KPI || DAX.contains(owner.kind);
    }

    private boolean isLast() { return nextLine() == lines.count(); }

    private boolean startsKnown(TmdlObject object, int below) {
      if (lines.level(below) > level + 1) return false;
      Statement statement = new Statement(below, 0, lines.content(below));
      return statement.belongsTo(object, statement.takeWord());
    }

    /** A text that is JSON; one that is not is kept as a text. */
    private Json jsonOf(String value) {
      if (!value.startsWith("{") && !value.startsWith("["))
        return Json.plain(Json.Kind.STRING, TmdlNames.value(value));
      try {
        return JsonReader.read(value, new JsonReader.Passed());
      } catch (IOException | ImportException fault) {
        faults.lose(line, lines.indentation(line), "expected JSON: " + fault.getMessage());
        return null;
      }
    }

    // Properties.

    private void readProperty(TmdlObject object, String word) {
      ++at;
      skipBlanks();
      String property = TmdlProperties.spelling(word);
      if (at == text.length() && hasLinesBelow() && TmdlProperties.mayBeObject(property)) {
        openNested(object, property);
        return;
      }
      String value = text.substring(at);
      put(object, property, TmdlNames.value(value));
    }

    private void readExpressionProperty(TmdlObject object, String word) {
      int column = at;
      at += starts("=") ? 1 : 2;
      String property = TmdlProperties.spelling(word);
      String value = takeText(true);
      if (value == null) {
        tellNothing("'" + property + "'", column);
        return;
      }
      tellEnd(object, value);
      put(object, property, TmdlProperties.isExpression(property) ? value : TmdlNames.value(value));
    }

    private void readBareWord(TmdlObject object, String word) {
      String property = TmdlProperties.spelling(word);
      if (object.kind.isTop()) {
        lose(0, "expected a kind of object, found '" + word + "'");
      } else if (!hasLinesBelow()) {
        put(object, property, "true");
      } else if (TmdlProperties.mayBeObject(property)) {
        openNested(object, property);
      } else {
        put(object, property, "true");
      }
    }

    private void openNested(TmdlObject object, String property) {
      if (owners.size() > MAX_DEPTH) {
        lose(0, "more than " + MAX_DEPTH + " levels of nesting");
        return;
      }
      TmdlObject nested = object.part(TmdlKind.NESTED, property);
      nested.declared = true;
      owners.push(new Owner(nested, level));
    }

    private void put(TmdlObject object, String property, String value) {
      dropDescription();
      if (object.kind.isTop()) {
        lose(0, "expected a kind of object, found '" + property + "'");
        return;
      }
      tell(TmdlProperties.put(TmdlProperties.ownerOf(object, property, database), property, value), 0);
    }

    private void tell(String fault, int column) {
      if (fault != null) faults.lose(line, lines.indentation(line) + column, fault);
    }

    // Texts behind "=".

    /** The text behind "=", on the line, in fences or below; null when there is none. */
    private String takeText(boolean isProperty) {
      skipBlanks();
      String rest = text.substring(at);
      if (rest.equals("```")) return takeFenced();
      return rest.isEmpty() ? takeBelow(isProperty) : rest;
    }

    private String takeFenced() {
      int close = findFence(next);
      if (close < 0) {
        faults.lose(line, lines.indentation(line) + at, "expected ``` in a line of its own at the end of the expression");
        return takeBelow(true);
      }
      String fenced = join(next, close, lines.indentation(close), true);
      next = close + 1;
      return fenced;
    }

    private String takeBelow(boolean isProperty) {
      int first = nextLine();
      int least = isProperty ? level : level + 1;
      if (first == lines.count() || lines.level(first) <= least) return null;
      // What stands one level deeper than a property may be properties of its own, but behind deeper lines only.
      if (lines.level(first) > level + 1) least = level + 1;
      int end = first;
      for (int i = first; i < lines.count() && (lines.isBlank(i) || lines.level(i) > least); ++i)
        if (!lines.isBlank(i)) end = i + 1;
      String below = join(next, end, edgeOf(first, end), false);
      next = end;
      return below;
    }

    private int edgeOf(int from, int end) {
      int edge = NONE;
      for (int i = from; i < end; ++i)
        if (!lines.isBlank(i)) edge = Math.min(edge, lines.edge(i));
      return edge;
    }

    /** Lines without the edge, joined; lines of blanks are kept in fences only. */
    private String join(int from, int end, int edge, boolean fenced) {
      StringBuilder joined = new StringBuilder();
      for (int i = from; i < end; ++i) {
        if (i > from) joined.append('\n');
        if (fenced || !lines.isBlank(i)) lines.appendFrom(i, edge, joined);
      }
      return joined.toString();
    }
  }
}

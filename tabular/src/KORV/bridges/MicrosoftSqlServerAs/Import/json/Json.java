package KORV.bridges.MicrosoftSqlServerAs.Import.json;

import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/** A value of the definition, with its place in the text. */
public final class Json {
  public enum Kind {
    OBJECT("an object"),
    ARRAY("an array"),
    STRING("a text"),
    OTHER("a number or a flag"),
    NULL("null");

    final String description;

    Kind(String description) { this.description = description; }
  }

  /** So many members are compared one by one, which is faster than an index and takes no memory. */
  private static final int MOST_UNINDEXED = 16;

  static final Json NOTHING = new Json(Kind.NULL, "", 0, 0);

  public final Kind kind;
  /** The text of a string; the literal of a number or flag. */
  public final String text;
  public final int line;
  public final int column;
  /** The values of an object or array, and beside them the names of an object's members. */
  public final ArrayList<Json> values;
  public final ArrayList<String> names;
  /** Where the last member of a name stands; made on the first look-up in an object of many members. */
  private Map<String, Integer> index;

  Json(Kind kind, String text, int line, int column) {
    this.kind = kind;
    this.text = text;
    this.line = line;
    this.column = column;
    boolean structured = kind == Kind.OBJECT || kind == Kind.ARRAY;
    values = structured ? new ArrayList<>(structured && kind == Kind.OBJECT ? 4 : 2) : null;
    names = kind == Kind.OBJECT ? new ArrayList<>(4) : null;
  }

  /** An empty object or array to be filled, for readers of other forms than JSON. Such values have no place. */
  public static Json structure(Kind kind) { return new Json(kind, "", 0, 0); }

  /** A text, or the literal of a number or flag, without a place. */
  public static Json plain(Kind kind, String text) { return new Json(kind, text, 0, 0); }

  /** Adds a member to an object that was not asked for any yet. */
  public void add(String name, Json value) {
    names.add(name);
    values.add(value);
  }

  /** The member of an object; null stands for absent. The last of equal names counts. */
  public Json get(String name) {
    if (kind != Kind.OBJECT) return NOTHING;
    int i = names.size() > MOST_UNINDEXED ? indexed(name) : names.lastIndexOf(name);
    return i < 0 ? NOTHING : values.get(i);
  }

  private int indexed(String name) {
    if (index == null) {
      index = new HashMap<>();
      for (int i = 0; i < names.size(); ++i) index.put(names.get(i), i);
    }
    return index.getOrDefault(name, -1);
  }

  /** Gives back the room that was kept for more members. */
  public void complete() {
    values.trimToSize();
    if (names != null) names.trimToSize();
  }

  public boolean has(String name) { return get(name).kind != Kind.NULL; }

  /** A member that is an object, or an empty object. */
  public Json object(String name) throws ImportException {
    Json value = get(name);
    if (value.kind == Kind.NULL) return new Json(Kind.OBJECT, "", line, column);
    return value.expect(Kind.OBJECT, name);
  }

  /** The objects of a member that is an array of them; none when it is absent. */
  public List<Json> objects(String name) throws ImportException {
    Json array = get(name);
    if (array.kind == Kind.NULL) return List.of();
    for (Json value : array.expect(Kind.ARRAY, name).values) value.expect(Kind.OBJECT, name);
    return array.values;
  }

  /** A member as text: a string, a number, a flag, or the lines of an array; empty when it is absent. */
  public String text(String name) throws ImportException {
    Json value = get(name);
    if (value.kind == Kind.ARRAY) {
      StringBuilder lines = new StringBuilder();
      for (int i = 0; i < value.values.size(); ++i) {
        Json part = value.values.get(i);
        if (part.values != null) part.expect(Kind.STRING, name);
        lines.append(i == 0 ? "" : "\n").append(part.text);
      }
      return lines.toString();
    }
    return value.kind == Kind.OBJECT ? value.expect(Kind.STRING, name).text : value.text;
  }

  /** The same as object(), objects() and text() for who takes what has another type as absent. */
  public Json part(String name) {
    Json value = get(name);
    return value.kind == Kind.OBJECT ? value : new Json(Kind.OBJECT, "", line, column);
  }

  public List<Json> elements(String name) {
    Json array = get(name);
    if (array.kind != Kind.ARRAY) return List.of();
    return array.values.stream().filter(value -> value.kind == Kind.OBJECT).toList();
  }

  public String written(String name) {
    Json value = get(name);
    if (value.isLines()) return String.join("\n", value.values.stream().map(line -> line.text).toList());
    return value.text;
  }

  /** The texts in an array; what else it holds is passed over. */
  public List<String> texts() {
    if (kind != Kind.ARRAY) return List.of();
    return values.stream().filter(value -> value.kind == Kind.STRING).map(value -> value.text).toList();
  }

  /** Whether the value is an array of texts, as expressions are written. */
  public boolean isLines() {
    return kind == Kind.ARRAY && values.stream().allMatch(line -> line.kind == Kind.STRING);
  }

  public boolean flag(String name) throws ImportException { return text(name).equals("true"); }

  Json expect(Kind wanted, String name) throws ImportException {
    if (kind == wanted) return this;
    throw new ImportException(ImportException.DEFINITION, line, column,
        "\"" + name + "\" is " + kind.description + ", expected " + wanted.description);
  }

  /** The value as text for a property: a plain value or lines of text as they are, the rest as JSON. */
  public String display() {
    if (kind == Kind.OBJECT || kind == Kind.ARRAY) {
      StringBuilder out = new StringBuilder();
      append(out);
      return out.toString();
    }
    return text;
  }

  /** Recursion is bounded by the reader's limit of nesting. */
  private void append(StringBuilder out) {
    switch (kind) {
      case STRING -> appendString(out, text);
      case OBJECT, ARRAY -> {
        out.append(names != null ? '{' : '[');
        for (int i = 0; i < values.size(); ++i) {
          if (i > 0) out.append(',');
          if (names != null) {
            appendString(out, names.get(i));
            out.append(':');
          }
          values.get(i).append(out);
        }
        out.append(names != null ? '}' : ']');
      }
      default -> out.append(kind == Kind.NULL ? "null" : text);
    }
  }

  private static void appendString(StringBuilder out, String text) {
    out.append('"');
    for (int i = 0; i < text.length(); ++i) {
      char c = text.charAt(i);
      switch (c) {
        case '"', '\\' -> out.append('\\').append(c);
        case '\n' -> out.append("\\n");
        case '\r' -> out.append("\\r");
        case '\t' -> out.append("\\t");
        default -> {
          if (c < 0x20) {
            out.append(String.format("\\u%04x", (int) c));
          } else {
            out.append(c);
          }
        }
      }
    }
    out.append('"');
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.json;

import KORV.bridges.MicrosoftSqlServerAs.Import.text.FileStamp;
import com.fasterxml.jackson.core.JsonFactory;
import com.fasterxml.jackson.core.JsonLocation;
import com.fasterxml.jackson.core.JsonParser;
import com.fasterxml.jackson.core.JsonProcessingException;
import com.fasterxml.jackson.core.JsonToken;
import com.fasterxml.jackson.core.io.JsonEOFException;
import com.fasterxml.jackson.core.json.JsonReadFeature;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.Set;

/** Reads a definition token by token, so that neither its size nor its depth costs call stack. */
public final class JsonReader {
  /** Real definitions nest about 15 deep; more than this is a damaged file. */
  private static final int MAX_DEPTH = 500;

  /** Members that are passed over: the server's own stamps, which say when and not what. */
  private static final Set<String> STAMPS = Set.of("modifiedTime", "structureModifiedTime", "refreshedTime",
      "createdTimestamp", "lastUpdate", "lastSchemaUpdate", "lastProcessed");
  private static final Set<String> STATES = Set.of("state", "errorMessage");

  /** How many members were passed over. */
  public static final class Passed {
    public int stamps;
    public int states;
  }

  /** Texts up to this length are worth a look whether they were read before. */
  private static final int LONGEST_SHARED = 40;
  private static final int SHARED_TEXTS = 1 << 14;

  private final JsonParser parser;
  private final Passed passed;
  /**
   * The text last read of each hash: definitions repeat data types, names of columns and the like all over,
   * and kept once they take a fraction of the memory. What is displaced is only kept once more.
   */
  private final String[] shared = new String[SHARED_TEXTS];

  private JsonReader(JsonParser parser, Passed passed) {
    this.parser = parser;
    this.passed = passed;
  }

  private static final JsonFactory FACTORY = JsonFactory.builder()
                                                 .enable(JsonReadFeature.ALLOW_JAVA_COMMENTS)
                                                 .enable(JsonReadFeature.ALLOW_UNESCAPED_CONTROL_CHARS)
                                                 .enable(JsonReadFeature.ALLOW_TRAILING_COMMA)
                                                 .build();

  /** The root value of a file. Comments, line ends inside texts and a byte order mark are accepted. */
  public static Json read(Path path, Passed passed) throws IOException, ImportException {
    FileStamp before = FileStamp.of(path);
    try (InputStream in = Files.newInputStream(path)) {
      Json root = read(FACTORY.createParser(in), passed);
      requireSame(before, path);
      return root;
    } catch (ImportException fault) {
      requireSame(before, path);
      throw fault;
    }
  }

  /** What breaks off because somebody writes the file is no fault of its own. */
  private static void requireSame(FileStamp before, Path path) throws IOException, ImportException {
    if (!FileStamp.of(path).equals(before))
      throw new ImportException(ImportException.FILE, 0, 0, FileStamp.CHANGED);
  }

  /** The value that a text is. */
  public static Json read(String text, Passed passed) throws IOException, ImportException {
    return read(FACTORY.createParser(text), passed);
  }

  private static Json read(JsonParser opened, Passed passed) throws IOException, ImportException {
    try (JsonParser parser = opened) {
      return new JsonReader(parser, passed).readTree();
    } catch (JsonEOFException fault) {
      throw at(fault.getLocation(), "the text ends before the definition does");
    } catch (JsonProcessingException fault) {
      throw at(
          fault.getLocation(), fault.getOriginalMessage().replaceAll("\\s*\\(?\\[Source:[^]]*\\]\\)?", ""));
    } catch (java.io.CharConversionException fault) {
      throw new ImportException(ImportException.SYNTAX, 0, 0, fault.getMessage());
    }
  }

  /** Whether the member is one of the server's, which no tree has. */
  public static boolean isStamp(String name) { return STAMPS.contains(name) || STATES.contains(name); }

  private Json readTree() throws IOException, ImportException {
    ArrayDeque<Json> open = new ArrayDeque<>();
    ArrayDeque<String> names = new ArrayDeque<>();
    Json root = null;
    for (JsonToken token = parser.nextToken(); token != null; token = parser.nextToken()) {
      if (root != null) throw at(parser.getTokenLocation(), "more text after the end of the definition");
      if (token == JsonToken.FIELD_NAME) {
        names.push(parser.currentName());
        continue;
      }
      if (token == JsonToken.END_OBJECT || token == JsonToken.END_ARRAY) {
        Json done = open.pop();
        done.complete();
        if (open.isEmpty()) root = done;
        continue;
      }
      Json value = makeValue(token);
      if (!open.isEmpty()) addTo(open.peek(), names, value);
      if (value.values == null) {
        if (open.isEmpty()) root = value;
      } else {
        if (open.size() == MAX_DEPTH)
          throw at(parser.getTokenLocation(), "more than " + MAX_DEPTH + " levels of nesting");
        open.push(value);
      }
    }
    if (root == null) throw at(parser.getCurrentLocation(), "the file is empty");
    return root;
  }

  private void addTo(Json parent, ArrayDeque<String> names, Json value) {
    if (parent.kind == Json.Kind.OBJECT) {
      String name = names.pop();
      boolean isStamp = value.values == null && STAMPS.contains(name);
      boolean isState = value.values == null && STATES.contains(name);
      if (isStamp) ++passed.stamps;
      if (isState) ++passed.states;
      if (isStamp || isState) return;
      parent.names.add(name);
    }
    parent.values.add(value);
  }

  private Json makeValue(JsonToken token) throws IOException {
    JsonLocation place = parser.getTokenLocation();
    Json.Kind kind = switch (token) {
      case START_OBJECT -> Json.Kind.OBJECT;
      case START_ARRAY -> Json.Kind.ARRAY;
      case VALUE_STRING -> Json.Kind.STRING;
      case VALUE_NULL -> Json.Kind.NULL;
      default -> Json.Kind.OTHER;
    };
    boolean plain = kind == Json.Kind.STRING || kind == Json.Kind.OTHER;
    return new Json(kind, plain ? text() : "", place.getLineNr(), place.getColumnNr());
  }

  private String text() throws IOException {
    String text = parser.getText();
    if (text.length() > LONGEST_SHARED) return text;
    int hash = text.hashCode();
    int place = (hash ^ hash >>> 16) & SHARED_TEXTS - 1;
    if (text.equals(shared[place])) return shared[place];
    shared[place] = text;
    return text;
  }

  private static ImportException at(JsonLocation place, String cause) {
    if (place == null) return new ImportException(ImportException.SYNTAX, 1, 1, cause);
    return new ImportException(
        ImportException.SYNTAX, Math.max(place.getLineNr(), 1), Math.max(place.getColumnNr(), 1), cause);
  }
}

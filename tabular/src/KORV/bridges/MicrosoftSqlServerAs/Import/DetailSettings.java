package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.List;
import java.util.Set;

/**
 * Members that no rule knows: a value becomes a setting by its path, a named object of an array an item. So
 * whatever a later version of the format has is kept too.
 */
final class DetailSettings {
  /** What editors note for themselves: names of annotations, and beginnings of them. */
  private static final Set<String> DESIGNERS = Set.of("Format", "TemplateId", "GoalType", "KpiStatusType",
      "SummarizationSetBy", "UnderlyingDateTimeDataType", "ConnectionEditUISource", "PBIDesktopVersion",
      "QueryEditorSerialization", "ClientCompatibilityLevel");
  private static final List<String> DESIGNERS_BEGINNINGS = List.of("PBI_", "__PBI_", "_TM_ExtProp_",
      "TabularEditor_", "__TEdtr", "KpiThreshold", "TableWidget", "BestPracticeAnalyzer_", "TextEditor_");
  /** Of a credential, what tells no secret. */
  private static final Set<String> OPEN_CREDENTIALS =
      Set.of("AuthenticationKind", "kind", "path", "Username", "EncryptConnection", "PrivacySetting");
  private static final String CREDENTIAL = "credential";
  private static final String PASSWORD = "password";
  private static final String NAME = "name";
  private static final String VALUE = "value";
  /** The setting of an item that tells in which list it stands. */
  static final String LIST = "listedIn";

  /** `isItem` where the subject was made for the value, and has its name. */
  private record Part(Subject subject, String path, Json value, boolean isItem) {
    Part(Subject subject, String path, Json value) {
      this(subject, path, value, false);
    }

    String within(String name) {
      return DetailSettings.within(path, name);
    }
  }

  private final Details details;

  DetailSettings(Details details) { this.details = details; }

  /**
   * What an object of the model has beside what the model keeps: plain values are properties or attributes
   * there. `placed` are members that others read.
   */
  void keepParts(Subject subject, Json definition, Set<String> placed) {
    for (int i = 0; i < definition.names.size(); ++i) {
      String name = definition.names.get(i);
      Json value = definition.values.get(i);
      if (value != definition.get(name) || placed.contains(name) || isPlain(value)) continue;
      keep(subject, name, value);
    }
  }

  /** What a data source logs in with, as far as it is no secret. */
  void keepCredential(Subject subject, Json definition) {
    if (definition.has(PASSWORD)) details.passOver(Kinds.Passed.secrets, 1);
    Json credential = definition.get(CREDENTIAL);
    if (credential.kind == Json.Kind.OBJECT) {
      keep(subject, CREDENTIAL, credential);
    } else if (definition.has(CREDENTIAL)) {
      details.passOver(Kinds.Passed.secrets, 1);
    }
  }

  /** All that an item has but `placed`. */
  void keepAll(Subject subject, Json definition, Set<String> placed) {
    keepMembers(subject, "", definition, placed);
  }

  /** The members of an object that is a part of another, under its name. */
  void keepMembers(Subject subject, String path, Json definition, Set<String> placed) {
    for (int i = 0; i < definition.names.size(); ++i) {
      String name = definition.names.get(i);
      Json value = definition.values.get(i);
      if (value == definition.get(name) && !placed.contains(name)) keep(subject, within(path, name), value);
    }
  }

  private static String within(String path, String name) { return path.isEmpty() ? name : path + "." + name; }

  private static boolean isPlain(Json value) {
    return value.kind != Json.Kind.OBJECT && value.kind != Json.Kind.ARRAY || value.isLines();
  }

  /** A text, a number, a flag, or lines of text. */
  private static String textOf(Json value) {
    return value.isLines() ? String.join("\n", value.values.stream().map(line -> line.text).toList())
                           : value.display();
  }

  /** A value that says nothing is none. */
  void keep(Subject subject, String path, Json value) {
    Deque<Part> waiting = new ArrayDeque<>(List.of(new Part(subject, path, value)));
    while (!waiting.isEmpty()) {
      Part part = waiting.pop();
      List<Part> inner = new ArrayList<>();
      if (part.value.kind == Json.Kind.OBJECT) {
        addMembers(part, inner);
      } else if (part.value.kind == Json.Kind.ARRAY && !part.value.isLines()) {
        addElements(part, inner);
      } else if (!textOf(part.value).isEmpty()) {
        details.set(part.subject, part.path, textOf(part.value));
      }
      for (int i = inner.size(); i-- > 0;) waiting.push(inner.get(i));
    }
  }

  private void addMembers(Part part, List<Part> inner) {
    boolean isCredential = part.path.equals(CREDENTIAL) || part.path.endsWith("." + CREDENTIAL);
    for (int i = 0; i < part.value.names.size(); ++i) {
      String name = part.value.names.get(i);
      if (isCredential && !OPEN_CREDENTIALS.contains(name)) {
        details.passOver(Kinds.Passed.secrets, 1);
      } else if (!(part.isItem && name.equals(NAME))) {
        inner.add(new Part(part.subject, part.within(name), part.value.values.get(i), false));
      }
    }
  }

  private void addElements(Part part, List<Part> inner) {
    String list = part.path.substring(part.path.lastIndexOf('.') + 1);
    List<Json> elements = part.value.values;
    if (list.equals("changedProperties")) {
      details.passOver(Kinds.Passed.designerNotes, elements.size());
      return;
    }
    boolean notes = list.equals("annotations") || list.equals("extendedProperties");
    for (int i = 0; i < elements.size(); ++i) {
      String name = elements.get(i).get(NAME).text;
      if (name.isEmpty()) {
        inner.add(new Part(part.subject, part.within(Integer.toString(i + 1)), elements.get(i), false));
      } else if (notes) {
        addNote(part, name, elements.get(i), inner);
      } else {
        Subject item = details.add(Kinds.Item.other, part.subject, name);
        details.set(item, LIST, part.path);
        inner.add(new Part(item, "", elements.get(i), true));
      }
    }
  }

  private void addNote(Part part, String name, Json note, List<Part> inner) {
    if (DESIGNERS.contains(name) || DESIGNERS_BEGINNINGS.stream().anyMatch(name::startsWith)) {
      details.passOver(Kinds.Passed.designerNotes, 1);
      return;
    }
    Json value = note.get(VALUE);
    details.set(part.subject, part.within(name), textOf(value));
    for (int i = 0; i < note.names.size(); ++i) {
      String member = note.names.get(i);
      if (member.equals(NAME) || member.equals(VALUE)) continue;
      inner.add(new Part(part.subject, part.within(name) + "." + member, note.values.get(i), false));
    }
  }
}

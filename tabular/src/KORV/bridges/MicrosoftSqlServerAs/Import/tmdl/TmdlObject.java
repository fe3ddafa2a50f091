package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Set;

/** An object while it is read, from one place or from several. */
final class TmdlObject {
  /** So many parts are compared one by one, which takes no index. */
  private static final int MOST_UNINDEXED = 8;

  final TmdlKind kind;
  String name;
  /** The object's own members; those that hold objects are added when all is read. */
  Json json = Json.structure(Json.Kind.OBJECT);
  final List<TmdlObject> parts = new ArrayList<>(0);
  /** Whether it was declared, and not only named to say where in the order it stands. */
  boolean declared;
  /** Where the model's own list of its parts has it; -1 when it is not there. */
  int order = -1;
  /** The file and line that name it first, for messages. */
  String file = "";
  int line = -1;
  private int orders;
  private Set<String> given;
  private Map<String, TmdlObject> index;

  TmdlObject(TmdlKind kind, String name) {
    this.kind = kind;
    this.name = name;
  }

  /** The part of this kind and name, made when there is none. Names ignore case. */
  TmdlObject part(TmdlKind partKind, String partName) {
    boolean same = partKind.nameMember != null || partKind.number == TmdlKind.Number.ONE;
    TmdlObject found = same ? find(partKind, partName) : null;
    if (found != null) return found;
    TmdlObject made = new TmdlObject(partKind, partName);
    parts.add(made);
    if (index != null) index.putIfAbsent(key(partKind, partName), made);
    return made;
  }

  TmdlObject find(TmdlKind partKind, String partName) {
    boolean only = partKind.number == TmdlKind.Number.ONE && partKind != TmdlKind.NESTED;
    String wanted = only ? "" : partName;
    if (parts.size() <= MOST_UNINDEXED) {
      for (TmdlObject part : parts)
        if (part.kind == partKind && (only || part.name.equalsIgnoreCase(wanted))) return part;
      return null;
    }
    if (index == null) {
      index = new HashMap<>();
      for (TmdlObject part : parts) index.putIfAbsent(key(part.kind, part.name), part);
    }
    return index.get(key(partKind, wanted));
  }

  private static String key(TmdlKind kind, String name) {
    boolean only = kind.number == TmdlKind.Number.ONE && kind != TmdlKind.NESTED;
    return only ? kind.name() : kind.name() + ' ' + name.toLowerCase(Locale.ROOT);
  }

  boolean has(String member) {
    if (given != null) return given.contains(member);
    return json.names.contains(member);
  }

  /** Gives the object a member; false, and nothing is changed, when it has that already. */
  boolean put(String member, Json value) {
    if (given == null && json.names.size() > MOST_UNINDEXED) given = new HashSet<>(json.names);
    if (given != null ? !given.add(member) : json.names.contains(member)) return false;
    json.add(member, value);
    return true;
  }

  void remove(String member) {
    int at = json.names.indexOf(member);
    json.names.remove(at);
    json.values.remove(at);
    if (given != null) given.remove(member);
  }

  void place(String inFile, int onLine) {
    file = inFile;
    line = onLine;
  }

  /** The next number of an order. */
  int takeOrder() { return orders++; }

  /** Takes everything away that was read of the object. */
  void clear() {
    json = Json.structure(Json.Kind.OBJECT);
    parts.clear();
    given = null;
    index = null;
  }

  /** For messages: "measure 'Total'". */
  String describe() {
    if (kind == TmdlKind.NESTED) return "'" + name + "'";
    boolean named = kind.nameMember != null && !(name.isEmpty() && kind.number == TmdlKind.Number.ONE);
    return "the " + kind.describe() + (named ? " '" + name + "'" : "");
  }
}

package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import java.util.ArrayList;
import java.util.Comparator;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Makes the tree that JSON gives of the objects that were read: what JSON says and TMDL does not is added. */
final class TmdlTree {
  private final TmdlFaults faults;

  private TmdlTree(TmdlFaults faults) { this.faults = faults; }

  /** The definition below `root`; its database is called `name` if it has no name of its own. */
  static Json make(TmdlObject root, String name, TmdlFaults faults) {
    TmdlObject database = root.part(TmdlKind.DATABASE, "");
    database.part(TmdlKind.MODEL, "").declared = true;
    if (database.name.isEmpty()) database.name = name;
    return new TmdlTree(faults).made(database);
  }

  /** Recursion is bounded by the parser's limit of nesting. */
  private Json made(TmdlObject object) {
    addTold(object);
    Json json = Json.structure(Json.Kind.OBJECT);
    boolean named = object.kind.nameMember != null;
    if (named && !(object.name.isEmpty() && object.kind.number == TmdlKind.Number.ONE))
      json.add(object.kind.nameMember, text(object.name));
    for (int i = 0; i < object.json.names.size(); ++i)
      json.add(object.json.names.get(i), object.json.values.get(i));
    addParts(object, json);
    json.complete();
    return json;
  }

  private void addParts(TmdlObject object, Json json) {
    if (object.parts.stream().anyMatch(part -> part.order >= 0))
      object.parts.sort(Comparator.comparingInt(part -> part.order < 0 ? Integer.MAX_VALUE : part.order));
    Map<String, Json> lists = new LinkedHashMap<>();
    for (TmdlObject part : object.parts) {
      if (!part.declared) {
        faults.enter(part.file);
        String cause = part.describe() + " is not declared in any file";
        // A culture without translations is nothing that anyone could miss.
        if (part.kind == TmdlKind.CULTURE) faults.warn(part.line, 0, cause);
        else faults.lose(part.line, 0, cause);
        continue;
      }
      if (part.kind.number == TmdlKind.Number.MANY) {
        lists.computeIfAbsent(part.kind.member, member -> Json.structure(Json.Kind.ARRAY)).values.add(made(part));
      } else {
        String member = part.kind == TmdlKind.NESTED ? part.name : part.kind.member;
        if (!object.has(member)) json.add(member, made(part));
      }
    }
    lists.forEach((member, list) -> {
      list.complete();
      json.add(member, list);
    });
  }

  private static Json text(String value) { return Json.plain(Json.Kind.STRING, value); }

  /** Adds what the kind of an object, its order or its owner tells. */
  private static void addTold(TmdlObject object) {
    switch (object.kind) {
      case TABLE -> addColumnTypes(object);
      case HIERARCHY -> addOrdinals(object);
      case PARTITION -> addSourceType(object);
      case EXPRESSION -> object.put("kind", text("m"));
      case REFRESH_POLICY -> object.put("policyType", text("basic"));
      case EXTENDED_PROPERTY -> {
        boolean structured = object.json.get("value").values != null;
        object.put("type", text(structured ? "json" : "string"));
      }
      case MEMBER -> {
        // JSON has types for the members of other directories only.
        if (object.json.get("memberType").text.equals("activeDirectory")) object.remove("memberType");
      }
      case DATA_SOURCE -> {
        boolean named = object.has("connectionString") || object.has("type");
        if (!named) object.put("type", text("structured"));
      }
      default -> {
      }
    }
    if (object.kind == TmdlKind.MODEL) orderTables(object);
  }

  /** An old version numbered the tables. */
  private static void orderTables(TmdlObject model) {
    for (TmdlObject part : model.parts) {
      if (part.kind != TmdlKind.TABLE || part.order >= 0 || !part.has("ordinal")) continue;
      String ordinal = part.json.get("ordinal").text;
      if (ordinal.matches("[0-9]{1,9}")) part.order = Integer.parseInt(ordinal);
      part.remove("ordinal");
    }
  }

  /** A column is computed by its expression, or by that of its table. */
  private static void addColumnTypes(TmdlObject table) {
    boolean computed = false;
    for (TmdlObject part : table.parts)
      computed |= part.kind == TmdlKind.PARTITION && part.json.get("type").text.equals("calculated");
    for (TmdlObject part : table.parts) {
      if (part.kind != TmdlKind.COLUMN) continue;
      if (part.has("expression")) {
        part.put("type", text("calculated"));
      } else if (computed) {
        part.put("type", text("calculatedTableColumn"));
      }
    }
  }

  private static void addOrdinals(TmdlObject hierarchy) {
    List<TmdlObject> levels = new ArrayList<>();
    for (TmdlObject part : hierarchy.parts)
      if (part.kind == TmdlKind.LEVEL) levels.add(part);
    for (int i = 0; i < levels.size(); ++i)
      levels.get(i).put("ordinal", Json.plain(Json.Kind.OTHER, Integer.toString(i)));
  }

  /** What kind of partition it is stands in its source. */
  private static void addSourceType(TmdlObject partition) {
    if (!partition.has("type")) return;
    TmdlObject source = partition.part(TmdlKind.SOURCE, "");
    source.declared = true;
    source.put("type", partition.json.get("type"));
    partition.remove("type");
  }
}

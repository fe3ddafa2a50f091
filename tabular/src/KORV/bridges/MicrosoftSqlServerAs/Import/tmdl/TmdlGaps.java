package KORV.bridges.MicrosoftSqlServerAs.Import.tmdl;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxExpression;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.JsonReader;
import java.io.IOException;
import java.nio.file.Path;
import java.util.HashSet;
import java.util.List;
import java.util.Locale;
import java.util.Set;

/**
 * Tells what a definition does not have although the rest of it shows that it must: files that are gone, and
 * what stood behind the end of files that are cut off. Every object in it was read by now.
 */
final class TmdlGaps {
  private static final String QUERY_ORDER = "PBI_QueryOrder";
  /** What gives no value unless relationships join tables. */
  private static final Set<String> JOINED = Set.of("RELATED", "USERELATIONSHIP");
  /** Partitions whose kind says that they hold what they read. */
  private static final Set<String> READING = Set.of("m", "calculated", "entity", "query");

  private final TmdlObject model;
  private final TmdlFaults faults;
  /** Files that may be cut off, by how they end. */
  private final Set<String> doubtful;
  /** What was told, by its kind and name. */
  private final Set<String> told = new HashSet<>();
  private boolean partitioned;

  private TmdlGaps(TmdlObject model, Set<String> doubtful, TmdlFaults faults) {
    this.model = model;
    this.doubtful = doubtful;
    this.faults = faults;
  }

  /** Looks through a definition that was read from these files. Only what says to be a whole one has gaps. */
  static void tell(TmdlObject database, List<Path> files, Set<String> doubtful, TmdlFaults faults) {
    TmdlObject model = database.part(TmdlKind.MODEL, "");
    if (!database.declared && !model.declared) return;
    TmdlGaps gaps = new TmdlGaps(model, doubtful, faults);
    gaps.tellFiles(database, files);
    gaps.tellParts();
  }

  // Files.

  /** Whoever writes a folder gives the database and the model a file each. */
  private void tellFiles(TmdlObject database, List<Path> files) {
    Path modelFile = named(files, "model");
    Path databaseFile = named(files, "database");
    if (modelFile != null && !database.declared && !database.has("compatibilityLevel"))
      lose(modelFile.resolveSibling("database.tmdl"), "no file declares the database; its compatibility level is lost");
    if (database.declared && database.file.equals(String.valueOf(databaseFile)) && !database.has("compatibilityLevel"))
      lose(database, "has no compatibilityLevel");
    if (databaseFile != null && !model.declared)
      lose(databaseFile.resolveSibling("model.tmdl"),
          "no file declares the model; its settings and the order of its parts are lost");
    if (modelFile != null && model.declared) tellOrder(modelFile);
    if (modelFile != null) tellRelationships(modelFile.resolveSibling("relationships.tmdl"));
  }

  /** The model's file lists the tables, or an old version numbered them. */
  private void tellOrder(Path file) {
    TmdlObject unlisted = null;
    int tables = 0;
    for (TmdlObject part : model.parts) {
      if (part.kind != TmdlKind.TABLE) continue;
      ++tables;
      boolean listed = part.order >= 0 || part.has("ordinal") || part.file.equals(file.toString());
      if (!listed && unlisted == null) unlisted = part;
    }
    if (tables < 2 || unlisted == null) return;
    faults.enter(file.toString());
    faults.warn(-1, 0, "it does not list " + unlisted.describe() + "; the order of tables is not known");
  }

  private static Path named(List<Path> files, String name) {
    for (Path file : files)
      if (file.getFileName().toString().toLowerCase(Locale.ROOT).matches(name + "\\.tmdl?")) return file;
    return null;
  }

  private void tellRelationships(Path file) {
    for (TmdlObject part : model.parts)
      if (part.kind == TmdlKind.RELATIONSHIP) return;
    for (TmdlObject table : model.parts) {
      if (table.kind != TmdlKind.TABLE) continue;
      for (TmdlObject part : table.parts) {
        if (!needsRelationship(part)) continue;
        lose(file, "no file declares a relationship, which " + part.describe() + " of " + table.describe()
            + " needs");
        told.add(TmdlKind.RELATIONSHIP.name());
        return;
      }
    }
  }

  private static boolean needsRelationship(TmdlObject part) {
    for (TmdlObject inner : part.parts)
      if (inner.kind == TmdlKind.VARIATION && inner.has("relationship")) return true;
    boolean computed = part.kind == TmdlKind.MEASURE || part.kind == TmdlKind.COLUMN;
    return computed && part.has("expression") && DaxExpression.calls(part.json.get("expression").text, JOINED);
  }

  private void lose(Path file, String cause) {
    faults.enter(file.toString());
    faults.lose(-1, 0, cause);
  }

  // Parts.

  private void tellParts() {
    for (TmdlObject part : model.parts) partitioned |= find(part, TmdlKind.PARTITION) != null;
    for (TmdlObject part : List.copyOf(model.parts)) {
      switch (part.kind) {
        case TABLE -> tellTable(part);
        case RELATIONSHIP -> tellRelationship(part);
        case ROLE -> part.parts.forEach(this::tellPermission);
        case PERSPECTIVE -> tellPerspective(part);
        case ANNOTATION -> {
          if (part.name.equals(QUERY_ORDER)) tellQueries(part);
        }
        default -> {
        }
      }
    }
  }

  private static TmdlObject find(TmdlObject owner, TmdlKind kind) {
    for (TmdlObject part : owner.parts)
      if (part.kind == kind) return part;
    return null;
  }

  private void tellTable(TmdlObject table) {
    if (!table.declared) return;
    boolean group = find(table, TmdlKind.CALCULATION_GROUP) != null;
    // One that people write to hold measures only may have none.
    boolean filled = find(table, TmdlKind.COLUMN) != null || doubtful.contains(table.file);
    if (partitioned && !group && filled && find(table, TmdlKind.PARTITION) == null)
      lose(table, "has no partition, as other tables have: where its data comes from is lost");
    for (TmdlObject part : table.parts) {
      switch (part.kind) {
        case COLUMN -> tellColumn(table, part);
        case HIERARCHY -> tellHierarchy(table, part);
        case PARTITION -> tellPartition(part);
        default -> {
        }
      }
    }
  }

  private void tellColumn(TmdlObject table, TmdlObject column) {
    expect(column, table, TmdlKind.COLUMN, text(column.json, "sortByColumn"));
    for (TmdlObject part : column.parts) {
      if (part.kind != TmdlKind.VARIATION) continue;
      expect(part, model, TmdlKind.RELATIONSHIP, text(part.json, "relationship"));
      Json hierarchy = part.json.get("defaultHierarchy");
      expect(part, table(text(hierarchy, "table"), part), TmdlKind.HIERARCHY, text(hierarchy, "hierarchy"));
    }
  }

  private void tellHierarchy(TmdlObject table, TmdlObject hierarchy) {
    if (find(hierarchy, TmdlKind.LEVEL) == null) lose(hierarchy, "has no level");
    for (TmdlObject level : hierarchy.parts) {
      if (level.kind != TmdlKind.LEVEL) continue;
      if (level.has("column")) expect(level, table, TmdlKind.COLUMN, text(level.json, "column"));
      else lose(level, "of " + hierarchy.describe() + " names no column");
    }
  }

  private void tellPartition(TmdlObject partition) {
    TmdlObject source = find(partition, TmdlKind.SOURCE);
    if (source == null && partition.has("source")) return;
    Json read = source == null ? partition.json : source.json;
    boolean reads = read.has("expression") || read.has("query") || read.has("entityName");
    if (!reads && READING.contains(text(partition.json, "type"))) lose(partition, "reads nothing: it has no source");
    expect(partition, model, TmdlKind.EXPRESSION, text(read, "expressionSource"));
    expect(partition, model, TmdlKind.DATA_SOURCE, text(read, "dataSource"));
  }

  private void tellRelationship(TmdlObject relationship) {
    tellEnd(relationship, "fromTable", "fromColumn");
    tellEnd(relationship, "toTable", "toColumn");
  }

  private void tellEnd(TmdlObject relationship, String tableMember, String columnMember) {
    if (!relationship.has(columnMember)) {
      lose(relationship, "has no " + columnMember);
      return;
    }
    TmdlObject table = table(text(relationship.json, tableMember), relationship);
    expect(relationship, table, TmdlKind.COLUMN, text(relationship.json, columnMember));
  }

  private void tellPermission(TmdlObject permission) {
    if (permission.kind == TmdlKind.TABLE_PERMISSION) table(permission.name, permission);
  }

  private void tellPerspective(TmdlObject perspective) {
    for (TmdlObject shown : perspective.parts) {
      if (shown.kind != TmdlKind.PERSPECTIVE_TABLE) continue;
      TmdlObject table = table(shown.name, shown);
      if (shown.parts.isEmpty() && !shown.has("includeAll")) lose(shown, "shows nothing");
      for (TmdlObject part : shown.parts) {
        switch (part.kind) {
          case PERSPECTIVE_COLUMN -> expect(part, table, TmdlKind.COLUMN, part.name);
          case PERSPECTIVE_MEASURE -> expect(part, table, TmdlKind.MEASURE, part.name);
          case PERSPECTIVE_HIERARCHY -> expect(part, table, TmdlKind.HIERARCHY, part.name);
          default -> {
          }
        }
      }
    }
  }

  /** Its editor keeps the names of all queries, which tables and shared expressions are. */
  private void tellQueries(TmdlObject order) {
    Set<String> known = new HashSet<>();
    for (TmdlObject part : model.parts) {
      known.add(part.name.toLowerCase(Locale.ROOT));
      if (part.kind != TmdlKind.TABLE) continue;
      for (TmdlObject inner : part.parts)
        if (inner.kind == TmdlKind.PARTITION) known.add(inner.name.toLowerCase(Locale.ROOT));
    }
    for (String query : textsIn(text(order.json, "value"))) {
      if (known.contains(query.toLowerCase(Locale.ROOT))) continue;
      enter(order);
      faults.lose(order.line, 0, "the query '" + query + "', which the model lists, is in no file");
    }
  }

  private static List<String> textsIn(String json) {
    try {
      return JsonReader.read("{\"list\":" + json + "}", new JsonReader.Passed()).get("list").texts();
    } catch (IOException | ImportException fault) {
      return List.of();  // of other editors
    }
  }

  private static String text(Json json, String member) { return json.get(member).text; }

  /** The table that an object names; null when there is none, which is told once. */
  private TmdlObject table(String name, TmdlObject namer) {
    expect(namer, model, TmdlKind.TABLE, name);
    TmdlObject found = name.isEmpty() ? null : model.find(TmdlKind.TABLE, name);
    return found != null && found.declared ? found : null;
  }

  /** Tells of a part that an object names and its owner does not have. One of an unknown owner is lost with it. */
  private void expect(TmdlObject namer, TmdlObject owner, TmdlKind kind, String name) {
    if (owner == null || name.isEmpty() || told.contains(kind.name())) return;
    // What is listed and not declared is told where the list is.
    if (owner.find(kind, name) != null) return;
    if (!told.add(kind + "\n" + owner.name + "\n" + name.toLowerCase(Locale.ROOT))) return;
    String cause = "names the " + kind.describe() + " '" + name + "', which ";
    boolean isTop = owner == model;
    lose(namer, cause + (isTop ? "no file declares" : owner.describe() + " in " + owner.file + " does not have"));
  }

  private void lose(TmdlObject object, String what) {
    enter(object);
    faults.lose(object.line, 0, object.describe() + " " + what);
  }

  private void enter(TmdlObject object) {
    if (!object.file.equals(faults.file())) faults.enter(object.file);
  }
}

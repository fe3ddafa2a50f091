package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxResolver;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/** What DAX expressions name, as relations and open names. */
final class DaxDetails {
  /** An expression of an object of the model, whose columns and tables the model has. */
  private record Noted(ModelObject object, DaxLineage lineage) {}

  private final Details details;
  private final OpenNames openNames;
  private final List<Noted> noted = new ArrayList<>();
  private final Map<DaxLineage.Join, List<Subject>> relationships = new HashMap<>();
  private final Map<String, Subject> functions = new HashMap<>();
  private final Map<String, Subject> calendars = new HashMap<>();

  DaxDetails(DaxResolver resolver, Details details) {
    this.details = details;
    openNames = new OpenNames(resolver, details);
  }

  OpenNames openNames() { return openNames; }

  /** Keeps what the model does not take of an expression until all that it may name is there. */
  void note(ModelObject object, DaxLineage lineage) {
    if (lineage.hasCalls() || !lineage.unresolved.isEmpty()) noted.add(new Noted(object, lineage));
  }

  void addRelationship(ModelObject from, ModelObject to, Subject relationship) {
    relationships.computeIfAbsent(new DaxLineage.Join(from, to), j -> new ArrayList<>(1)).add(relationship);
  }

  void addFunction(String name, Subject function) { functions.putIfAbsent(Names.fold(name), function); }

  Subject function(String name) { return functions.get(Names.fold(name)); }

  void addCalendar(String name, Subject calendar) { calendars.putIfAbsent(Names.fold(name), calendar); }

  void relateNoted() {
    for (Noted one : noted)
      relateCalls(one.lineage, Kinds.RelationKind.computed, one.object, one.object.owner.name());
  }

  /** All that an expression names which the model does not have; `home` is its table, or null. */
  void relate(DaxLineage lineage, Kinds.RelationKind kind, Subject subject, String home) {
    boolean gives = kind == Kinds.RelationKind.computed;
    for (ModelObject feature : lineage.features) details.relate(kind, feature, subject);
    for (ModelObject table : lineage.tables) {
      boolean counts = gives && lineage.counted.contains(table);
      details.relate(counts ? Kinds.RelationKind.counted
              : gives       ? Kinds.RelationKind.condition
                            : kind,
          table, subject);
    }
    relateCalls(lineage, kind, subject, home);
  }

  private void relateCalls(DaxLineage lineage, Kinds.RelationKind kind, Subject subject, String home) {
    for (DaxLineage.Join join : lineage.joins) relateJoin(join, subject);
    for (String name : lineage.functions) {
      Subject function = functions.get(Names.fold(name));
      if (function != null) details.relate(kind, function, subject);
    }
    for (String name : lineage.calendars) {
      Subject calendar = calendars.get(Names.fold(name));
      if (calendar != null) details.relate(Kinds.RelationKind.mentions, calendar, subject);
    }
    for (String name : lineage.unknownFunctions)
      details.addOpenName(subject, name, Kinds.State.beyond, "function");
    for (String name : lineage.unresolved) openNames.add(subject, name, home);
  }

  private void relateJoin(DaxLineage.Join join, Subject subject) {
    List<Subject> found = new ArrayList<>(relationships.getOrDefault(join, List.of()));
    found.addAll(relationships.getOrDefault(new DaxLineage.Join(join.to(), join.from()), List.of()));
    for (Subject relationship : found) details.relate(Kinds.RelationKind.follows, relationship, subject);
    if (!found.isEmpty()) return;
    String name = OpenNames.written(join.from()) + ", " + OpenNames.written(join.to());
    details.addOpenName(subject, name, Kinds.State.mistake, "no relationship joins them");
  }
}

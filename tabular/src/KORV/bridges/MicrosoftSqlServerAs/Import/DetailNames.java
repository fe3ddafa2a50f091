package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import KORV.bridges.MicrosoftSqlServerAs.Import.text.Names;
import java.util.HashMap;
import java.util.IdentityHashMap;
import java.util.List;
import java.util.Map;

/** What the names of a definition mean, for its details. The first object of a name stays. */
final class DetailNames {
  private final Details details;
  private final TableImport tables;
  private final OpenNames open;
  private final Map<String, Subject> dataSources = new HashMap<>();
  private final Map<String, Subject> shared = new HashMap<>();
  private final Map<String, Subject> relationships = new HashMap<>();
  private final Map<String, ModelObject> kpis = new HashMap<>();
  private final Map<String, ModelObject> perspectives = new HashMap<>();
  private final Map<ModelObject, Map<String, ModelObject>> levels = new IdentityHashMap<>();
  /** The tables under the names that the cube gives them, their columns, and its copies of measures. */
  private final Map<ModelObject, ModelObject> copies = new IdentityHashMap<>();

  DetailNames(Details details, TableImport tables, CubeImport cube) {
    this.details = details;
    this.tables = tables;
    open = tables.expressions().openNames();
    for (int i = 0; i < cube.aliases().size(); ++i) {
      ModelObject dimension = tables.tables.get(i).dimension();
      copies.put(dimension, cube.aliases().get(i));
      List<ModelObject> attributes = dimension.parts(ModelObject.Role.features);
      for (int j = 0; j < attributes.size(); ++j)
        copies.put(attributes.get(j), cube.aliases().get(i).parts(ModelObject.Role.features).get(j));
      for (ModelObject hierarchy : dimension.parts(ModelObject.Role.hierarchies))
        open.addHierarchy(dimension, hierarchy);
    }
    for (ModelObject perspective : cube.cube().parts(ModelObject.Role.synonyms))
      perspectives.putIfAbsent(Names.fold(perspective.name()), perspective);
    for (CubeImport.Computed one : cube.computed) {
      copies.put(one.measure(), one.copy());
      ModelObject owner = one.measure().owner;
      if (!one.isMeasure()) kpis.putIfAbsent(Names.fold(owner.name()), owner);
    }
  }

  static String written(String table) { return "'" + table.replace("'", "''") + "'"; }

  /** Of a measure where `table` is empty. */
  static String written(String table, String name) {
    return (table.isEmpty() ? "" : written(table)) + "[" + name.replace("]", "]]") + "]";
  }

  void addDataSource(String name, Subject item) { dataSources.putIfAbsent(name, item); }

  Subject dataSource(String name) { return dataSources.get(name); }

  void addShared(String name, Subject item) {
    shared.putIfAbsent(name, item);
    open.addOther(name, "expression");
  }

  Subject shared(String name) { return shared.get(name); }

  void addRelationship(String name, Subject item) { relationships.putIfAbsent(name, item); }

  Subject relationship(String name) { return relationships.get(name); }

  ModelObject perspective(String name) { return perspectives.get(Names.fold(name)); }

  ModelObject hierarchy(String table, String name) { return open.findHierarchy(table, name); }

  ModelObject table(String name) { return tables.resolver.dimensionOf(name); }

  ModelObject column(String table, String name) { return tables.resolver.findColumn(table, name); }

  ModelObject measure(String name) { return tables.resolver.findMeasure(name); }

  ModelObject kpi(String measure) { return kpis.get(Names.fold(measure)); }

  /** A level of a hierarchy in its place; null when it has none of that name. */
  ModelObject level(ModelObject hierarchy, String name) {
    Map<String, ModelObject> known = levels.get(hierarchy);
    if (known == null) {
      levels.put(hierarchy, known = new HashMap<>());
      for (ModelObject place : hierarchy.parts(ModelObject.Role.hierarchyLevelAssociations))
        known.putIfAbsent(Names.fold(place.references().get("level").get(0).name()), place);
    }
    return known.get(Names.fold(name));
  }

  ModelObject aliasOf(String table) { return copies.get(table(table)); }

  ModelObject aliasOf(String table, String column) { return copies.get(column(table, column)); }

  ModelObject copyOf(String measure) { return copies.get(measure(measure)); }

  void relateMember(ModelObject listed, ModelObject perspective, String written) {
    if (listed == null) {
      open.add(perspective, written, null);
    } else {
      details.relate(Kinds.RelationKind.member, listed, perspective);
    }
  }

  /** Gives the column that `subject` names; null when there is none, which is told of. */
  ModelObject relateColumn(
      Kinds.RelationKind kind, Subject subject, String table, String column, String text) {
    ModelObject found = column(table, column);
    if (found == null) {
      open.add(subject, written(table, column), null);
    } else {
      details.relate(kind, found, subject, text);
    }
    return found;
  }

  void relateTable(Kinds.RelationKind kind, Subject subject, String table, String text) {
    ModelObject found = table(table);
    if (found == null) {
      open.add(subject, written(table), null);
    } else {
      details.relate(kind, found, subject, text);
    }
  }

  /** The shared expressions and tables that a query in M names. */
  void relateQuery(String text, Subject reader) {
    for (String name : tables.queries.namesIn(text)) {
      Subject named = shared.get(name);
      if (named == null && tables.isQuery(name)) named = table(name);
      if (named == null) named = dataSources.get(name);
      if (named != null && named != reader) details.relate(Kinds.RelationKind.reads, named, reader);
    }
  }

  void addOpenName(Subject subject, String written) { open.add(subject, written, null); }

  /** A name that is not there, of something that no expression can name. */
  void addMissing(Subject subject, String name, String what) {
    details.addOpenName(subject, name, Kinds.State.mistake, "no such " + what);
  }
}

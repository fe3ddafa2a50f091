package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import java.util.List;
import java.util.Set;

/** What a definition says beyond its model: what stands beside the tables, and the order of it all. */
final class DetailImport {
  private static final Set<String> MODEL_PLACED = Set.of("dataSources", "tables", "relationships",
      "expressions", "functions", "perspectives", "roles", "cultures");
  private static final Set<String> RELATIONSHIP_PLACED =
      Set.of("name", "fromTable", "fromColumn", "toTable", "toColumn");
  private static final Set<String> ITEM_PLACED = Set.of("name", "expression");

  private final Details details;
  private final TableImport tables;
  private final CubeImport cube;
  private final DetailSettings settings;
  private final DetailNames names;
  private final DaxDetails expressions;

  DetailImport(Details details, TableImport tables, CubeImport cube) {
    this.details = details;
    this.tables = tables;
    this.cube = cube;
    settings = new DetailSettings(details);
    expressions = tables.expressions();
    names = new DetailNames(details, tables, cube);
  }

  /** `connections` are those of the data sources, in the order of the definition. */
  void importDetails(Json model, List<ModelObject> connections) {
    List<Json> dataSources = model.elements("dataSources");
    for (int i = 0; i < dataSources.size(); ++i) importDataSource(dataSources.get(i), connections.get(i));
    for (Json shared : model.elements("expressions")) importShared(shared);
    for (Json function : model.elements("functions")) importFunction(function);
    for (Json relationship : model.elements("relationships")) importRelationship(relationship);
    new TableDetails(details, names, settings, tables, cube).importTables();
    // From here on all that expressions may name is there.
    for (Json shared : model.elements("expressions")) relateShared(shared);
    for (Json function : model.elements("functions")) relateFunction(function);
    List<Json> perspectives = model.elements("perspectives");
    for (int i = 0; i < perspectives.size(); ++i)
      importPerspective(perspectives.get(i), cube.cube().parts(ModelObject.Role.synonyms).get(i));
    RoleDetails roles = new RoleDetails(details, names, settings, tables, cube.cube());
    for (Json role : model.elements("roles")) roles.importRole(role);
    CultureDetails cultures = new CultureDetails(details, names, settings, cube.cube());
    for (Json culture : model.elements("cultures")) cultures.importCulture(culture);
    settings.keepParts(cube.cube(), model, MODEL_PLACED);
    expressions.relateNoted();
  }

  private void importDataSource(Json definition, ModelObject connection) {
    names.addDataSource(definition.written("name"), connection);
    settings.keepParts(connection, definition, Set.of("credential", "password"));
    settings.keepCredential(connection, definition);
  }

  private void importShared(Json definition) {
    String name = definition.written("name");
    Subject item =
        details.add(Kinds.Item.sharedExpression, cube.cube(), name, definition.written("expression"), "m");
    names.addShared(name, item);
    settings.keepAll(item, definition, ITEM_PLACED);
  }

  /** Queries of one name: the first is meant. */
  private void relateShared(Json definition) {
    names.relateQuery(definition.written("expression"), names.shared(definition.written("name")));
  }

  private void importFunction(Json definition) {
    String name = definition.written("name");
    Subject item =
        details.add(Kinds.Item.function, cube.cube(), name, definition.written("expression"), "dax");
    expressions.addFunction(name, item);
    settings.keepAll(item, definition, ITEM_PLACED);
  }

  private void relateFunction(Json definition) {
    Subject item = expressions.function(definition.written("name"));
    DaxLineage lineage = tables.resolver.resolveFunction(definition.written("expression"));
    expressions.relate(lineage, Kinds.RelationKind.computed, item, null);
  }

  private void importRelationship(Json definition) {
    String name = definition.written("name");
    String from = DetailNames.written(definition.written("fromTable"), definition.written("fromColumn"));
    String to = DetailNames.written(definition.written("toTable"), definition.written("toColumn"));
    Subject item = details.add(Kinds.Item.relationship, cube.cube(), name, from + " -> " + to, "");
    ModelObject one = names.relateColumn(Kinds.RelationKind.joins, item, definition.written("fromTable"),
        definition.written("fromColumn"), "from");
    ModelObject other = names.relateColumn(
        Kinds.RelationKind.joins, item, definition.written("toTable"), definition.written("toColumn"), "to");
    names.addRelationship(name, item);
    if (one != null && other != null) expressions.addRelationship(one, other, item);
    settings.keepAll(item, definition, RELATIONSHIP_PLACED);
  }

  private void importPerspective(Json definition, ModelObject perspective) {
    for (Json table : definition.elements("tables")) {
      String name = table.written("name");
      names.relateMember(names.aliasOf(name), perspective, DetailNames.written(name));
      for (Json column : table.elements("columns"))
        names.relateMember(names.aliasOf(name, column.written("name")), perspective,
            DetailNames.written(name, column.written("name")));
      for (Json measure : table.elements("measures"))
        names.relateMember(names.copyOf(measure.written("name")), perspective,
            DetailNames.written("", measure.written("name")));
      for (Json hierarchy : table.elements("hierarchies"))
        names.relateMember(names.hierarchy(name, hierarchy.written("name")), perspective,
            DetailNames.written(name, hierarchy.written("name")));
      keepListed(table, perspective);
    }
    settings.keepParts(perspective, definition, Set.of("tables"));
  }

  /** What a perspective notes of a table beside what it lists. */
  private void keepListed(Json table, ModelObject perspective) {
    for (int i = 0; i < table.names.size(); ++i) {
      String member = table.names.get(i);
      Json value = table.values.get(i);
      if (!Set.of("name", "columns", "measures", "hierarchies").contains(member)) {
        settings.keep(perspective, "tables." + table.written("name") + "." + member, value);
        continue;
      }
      if (value.kind != Json.Kind.ARRAY) continue;
      for (Json listed : value.values) {
        String path = "tables." + table.written("name") + "." + member + "." + listed.written("name");
        for (int j = 0; j < listed.names.size(); ++j)
          if (!listed.names.get(j).equals("name"))
            settings.keep(perspective, path + "." + listed.names.get(j), listed.values.get(j));
      }
    }
  }
}

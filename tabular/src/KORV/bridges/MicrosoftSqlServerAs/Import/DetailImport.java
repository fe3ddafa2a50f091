package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
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
  void importDetails(Json model, List<ModelObject> connections) throws ImportException {
    List<Json> dataSources = model.objects("dataSources");
    for (int i = 0; i < dataSources.size(); ++i) importDataSource(dataSources.get(i), connections.get(i));
    for (Json shared : model.objects("expressions")) importShared(shared);
    for (Json function : model.objects("functions")) importFunction(function);
    for (Json relationship : model.objects("relationships")) importRelationship(relationship);
    new TableDetails(details, names, settings, tables, cube).importTables();
    // From here on all that expressions may name is there.
    for (Json shared : model.objects("expressions")) relateShared(shared);
    for (Json function : model.objects("functions")) relateFunction(function);
    List<Json> perspectives = model.objects("perspectives");
    for (int i = 0; i < perspectives.size(); ++i)
      importPerspective(perspectives.get(i), cube.cube().parts(ModelObject.Role.synonyms).get(i));
    RoleDetails roles = new RoleDetails(details, names, settings, tables, cube.cube());
    for (Json role : model.objects("roles")) roles.importRole(role);
    CultureDetails cultures = new CultureDetails(details, names, settings, cube.cube());
    for (Json culture : model.objects("cultures")) cultures.importCulture(culture);
    settings.keepParts(cube.cube(), model, MODEL_PLACED);
    expressions.relateNoted();
  }

  private void importDataSource(Json definition, ModelObject connection) throws ImportException {
    names.addDataSource(definition.text("name"), connection);
    settings.keepParts(connection, definition, Set.of("credential", "password"));
    settings.keepCredential(connection, definition);
  }

  private void importShared(Json definition) throws ImportException {
    String name = definition.text("name");
    Subject item =
        details.add(Kinds.Item.sharedExpression, cube.cube(), name, definition.text("expression"), "m");
    names.addShared(name, item);
    settings.keepAll(item, definition, ITEM_PLACED);
  }

  /** Queries of one name: the first is meant. */
  private void relateShared(Json definition) throws ImportException {
    names.relateQuery(definition.text("expression"), names.shared(definition.text("name")));
  }

  private void importFunction(Json definition) throws ImportException {
    String name = definition.text("name");
    Subject item = details.add(Kinds.Item.function, cube.cube(), name, definition.text("expression"), "dax");
    expressions.addFunction(name, item);
    settings.keepAll(item, definition, ITEM_PLACED);
  }

  private void relateFunction(Json definition) throws ImportException {
    Subject item = expressions.function(definition.text("name"));
    DaxLineage lineage = tables.resolver.resolveFunction(definition.text("expression"));
    expressions.relate(lineage, Kinds.Relation.computed, item, null);
  }

  private void importRelationship(Json definition) throws ImportException {
    String name = definition.text("name");
    String from = DetailNames.written(definition.text("fromTable"), definition.text("fromColumn"));
    String to = DetailNames.written(definition.text("toTable"), definition.text("toColumn"));
    Subject item = details.add(Kinds.Item.relationship, cube.cube(), name, from + " -> " + to, "");
    ModelObject one = names.relateColumn(
        Kinds.Relation.joins, item, definition.text("fromTable"), definition.text("fromColumn"), "from");
    ModelObject other = names.relateColumn(
        Kinds.Relation.joins, item, definition.text("toTable"), definition.text("toColumn"), "to");
    names.addRelationship(name, item);
    if (one != null && other != null) expressions.addRelationship(one, other, item);
    settings.keepAll(item, definition, RELATIONSHIP_PLACED);
  }

  private void importPerspective(Json definition, ModelObject perspective) throws ImportException {
    for (Json table : definition.objects("tables")) {
      String name = table.text("name");
      names.relateMember(names.aliasOf(name), perspective, DetailNames.written(name));
      for (Json column : table.objects("columns"))
        names.relateMember(names.aliasOf(name, column.text("name")), perspective,
            DetailNames.written(name, column.text("name")));
      for (Json measure : table.objects("measures"))
        names.relateMember(
            names.copyOf(measure.text("name")), perspective, DetailNames.written("", measure.text("name")));
      for (Json hierarchy : table.objects("hierarchies"))
        names.relateMember(names.hierarchy(name, hierarchy.text("name")), perspective,
            DetailNames.written(name, hierarchy.text("name")));
      keepListed(table, perspective);
    }
    settings.keepParts(perspective, definition, Set.of("tables"));
  }

  /** What a perspective notes of a table beside what it lists. */
  private void keepListed(Json table, ModelObject perspective) throws ImportException {
    for (int i = 0; i < table.names.size(); ++i) {
      String member = table.names.get(i);
      Json value = table.values.get(i);
      if (!Set.of("name", "columns", "measures", "hierarchies").contains(member)) {
        settings.keep(perspective, "tables." + table.text("name") + "." + member, value);
        continue;
      }
      if (value.kind != Json.Kind.ARRAY) continue;
      for (Json listed : value.values) {
        String path = "tables." + table.text("name") + "." + member + "." + listed.text("name");
        for (int j = 0; j < listed.names.size(); ++j)
          if (!listed.names.get(j).equals("name"))
            settings.keep(perspective, path + "." + listed.names.get(j), listed.values.get(j));
      }
    }
  }
}

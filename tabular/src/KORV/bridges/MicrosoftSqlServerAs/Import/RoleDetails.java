package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import java.util.Set;

/** Roles: who is in them, and what of the tables they may see. */
final class RoleDetails {
  private static final Set<String> PERMISSION_PLACED =
      Set.of("name", "filterExpression", "columnPermissions");

  private final Details details;
  private final DetailNames names;
  private final DetailSettings settings;
  private final TableImport tables;
  private final ModelObject cube;

  RoleDetails(
      Details details, DetailNames names, DetailSettings settings, TableImport tables, ModelObject cube) {
    this.details = details;
    this.names = names;
    this.settings = settings;
    this.tables = tables;
    this.cube = cube;
  }

  void importRole(Json definition) {
    Subject role = details.add(Kinds.Item.role, cube, definition.written("name"));
    for (Json member : definition.elements("members")) importMember(member, role);
    for (Json permission : definition.elements("tablePermissions")) importPermission(permission, role);
    settings.keepAll(role, definition, Set.of("name", "members", "tablePermissions"));
  }

  /** Members are told apart by their names, not by their places. */
  private void importMember(Json definition, Subject role) {
    String name = definition.written("memberName");
    if (name.isEmpty()) name = definition.written("memberId");
    details.set(role, "members", name);
    settings.keepMembers(role, "members." + name, definition, Set.of("memberName"));
  }

  private void importPermission(Json definition, Subject role) {
    String name = definition.written("name");
    String filter = definition.written("filterExpression");
    Subject item = details.add(Kinds.Item.permission, role, name, filter, "dax");
    details.relate(Kinds.RelationKind.belongs, role, item);
    names.relateTable(Kinds.RelationKind.secures, item, name, "");
    if (!filter.isEmpty()) {
      DaxLineage lineage = tables.resolver.resolveColumn(filter, tables.resolver.findTable(name));
      tables.expressions().relate(lineage, Kinds.RelationKind.filters, item, name);
    }
    for (Json column : definition.elements("columnPermissions")) {
      String permission = column.written("metadataPermission");
      names.relateColumn(Kinds.RelationKind.secures, item, name, column.written("name"), permission);
      settings.keepMembers(item, "columnPermissions." + column.written("name"), column, Set.of("name"));
    }
    settings.keepAll(item, definition, PERMISSION_PLACED);
  }
}

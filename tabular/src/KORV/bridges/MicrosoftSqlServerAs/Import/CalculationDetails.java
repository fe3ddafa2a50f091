package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import java.util.List;
import java.util.Set;

/** The items of calculation groups, each of which changes every measure. */
final class CalculationDetails {
  private static final String FORMAT = "formatStringDefinition";
  private static final String EXPRESSION = "expression";
  private static final List<String> SELECTIONS =
      List.of("noSelectionExpression", "multipleOrEmptySelectionExpression");

  private final Details details;
  private final DetailSettings settings;
  private final TableImport tables;
  private final CubeImport cube;
  private Subject everyMeasure;

  CalculationDetails(Details details, DetailSettings settings, TableImport tables, CubeImport cube) {
    this.details = details;
    this.settings = settings;
    this.tables = tables;
    this.cube = cube;
  }

  void importGroup(TableImport.Made table) {
    if (!table.definition().has("calculationGroup")) return;
    Json group = table.definition().part("calculationGroup");
    for (Json item : group.elements("calculationItems")) importItem(table, item, item.written("name"));
    for (String selection : SELECTIONS)
      if (group.has(selection)) importItem(table, group.part(selection), selection);
    Set<String> placed = Set.of("calculationItems", SELECTIONS.get(0), SELECTIONS.get(1));
    settings.keepMembers(table.dimension(), "calculationGroup", group, placed);
  }

  private void importItem(TableImport.Made table, Json definition, String name) {
    String text = definition.written(EXPRESSION);
    Subject item = details.add(Kinds.Item.calculationItem, table.dimension(), name, text, "dax");
    relate(table, text, Kinds.RelationKind.computed, item);
    relate(table, definition.part(FORMAT).written(EXPRESSION), Kinds.RelationKind.formats, item);
    details.relate(Kinds.RelationKind.applied, item, everyMeasure());
    settings.keepAll(item, definition, Set.of("name", EXPRESSION));
  }

  private void relate(TableImport.Made table, String text, Kinds.RelationKind kind, Subject item) {
    if (text.isEmpty()) return;
    DaxLineage lineage = tables.resolver.resolveMeasure(text, table.names());
    tables.expressions().relate(lineage, kind, item, null);
  }

  /** Stands between the items and the measures, whose numbers would multiply otherwise. */
  private Subject everyMeasure() {
    if (everyMeasure != null) return everyMeasure;
    everyMeasure = details.add(Kinds.Item.everyMeasure, cube.cube(), "Measures");
    for (CubeImport.Computed one : cube.computed)
      if (one.isMeasure()) details.relate(Kinds.RelationKind.applied, everyMeasure, one.measure());
    return everyMeasure;
  }
}

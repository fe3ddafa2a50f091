package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Subject;
import java.util.Set;

/** Cultures: what the objects of a model are called in a language, as settings of those objects. */
final class CultureDetails {
  private static final String NAME = "name";
  private static final Set<String> MODEL_LISTS = Set.of(NAME, "tables", "perspectives");
  private static final Set<String> TABLE_LISTS = Set.of(NAME, "columns", "measures", "hierarchies");

  private final Details details;
  private final DetailNames names;
  private final DetailSettings settings;
  private final ModelObject cube;

  CultureDetails(Details details, DetailNames names, DetailSettings settings, ModelObject cube) {
    this.details = details;
    this.names = names;
    this.settings = settings;
    this.cube = cube;
  }

  void importCulture(Json definition) {
    String language = definition.written(NAME);
    Subject culture = details.add(Kinds.Item.culture, cube, language);
    Json translations = definition.part("translations");
    Json model = translations.part("model");
    keep(culture, cube, language, model, MODEL_LISTS, "");
    for (Json perspective : model.elements("perspectives"))
      keep(culture, names.perspective(perspective.written(NAME)), language, perspective, Set.of(NAME),
          perspective.written(NAME));
    for (Json table : model.elements("tables")) importTable(culture, language, table);
    settings.keepMembers(culture, "translations", translations, Set.of("model"));
    settings.keepAll(culture, definition, Set.of(NAME, "translations"));
  }

  private void importTable(Subject culture, String language, Json table) {
    String name = table.written(NAME);
    keep(culture, names.table(name), language, table, TABLE_LISTS, DetailNames.written(name));
    for (Json column : table.elements("columns")) {
      String one = column.written(NAME);
      keep(culture, names.column(name, one), language, column, Set.of(NAME), DetailNames.written(name, one));
    }
    for (Json measure : table.elements("measures")) {
      String one = measure.written(NAME);
      keep(culture, names.measure(one), language, measure, Set.of(NAME, "kpi"), DetailNames.written("", one));
      if (measure.has("kpi"))
        keep(culture, names.kpi(one), language, measure.part("kpi"), Set.of(NAME),
            DetailNames.written("", one));
    }
    for (Json hierarchy : table.elements("hierarchies")) importHierarchy(culture, language, name, hierarchy);
  }

  private void importHierarchy(Subject culture, String language, String table, Json definition) {
    String name = definition.written(NAME);
    ModelObject hierarchy = names.hierarchy(table, name);
    String written = DetailNames.written(table, name);
    keep(culture, hierarchy, language, definition, Set.of(NAME, "levels"), written);
    for (Json level : definition.elements("levels"))
      keep(culture, hierarchy == null ? null : names.level(hierarchy, level.written(NAME)), language, level,
          Set.of(NAME), written + "[" + level.written(NAME) + "]");
  }

  /** "translatedCaption.de-DE"; of the culture itself where the object is not there. */
  private void keep(
      Subject culture, Subject object, String language, Json definition, Set<String> placed, String written) {
    if (object == null) names.addMissing(culture, written, "object to translate");
    for (int i = 0; i < definition.names.size(); ++i) {
      String member = definition.names.get(i);
      if (placed.contains(member)) continue;
      if (object == null)
        settings.keep(culture, written + "." + member, definition.values.get(i));
      else
        settings.keep(object, member + "." + language, definition.values.get(i));
    }
  }
}

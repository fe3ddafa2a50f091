package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.dax.DaxLineage;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Catalog;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Labels;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.LineageMaps;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;

/** The model as a cube: the tables under their names, measures, KPIs and perspectives. */
final class CubeImport {
  private static final Set<String> MEASURE_PLACED =
      Set.of("name", "description", "expression", "isHidden", "dataType", "kpi");
  private static final Set<String> KPI_PLACED =
      Set.of("description", "targetExpression", "statusExpression", "trendExpression");
  private static final Set<String> PERSPECTIVE_PLACED = Set.of("name", "description");
  private static final Map<Labels.KpiPart, String> KPI_MEMBERS = Map.of(Labels.KpiPart.GOAL,
      "targetExpression", Labels.KpiPart.STATUS, "statusExpression", Labels.KpiPart.TREND, "trendExpression");

  /**
   * A measure or a part of a KPI, whose expression is resolved when all names are known. `definition` is the
   * measure's, the whole KPI's in that of its value, and null in the other parts of a KPI.
   */
  record Computed(TableImport.Made table, Json definition, ModelObject measure, ModelObject copy) {
    boolean isMeasure() {
      return Labels.CALCULATED_MEASURE.equals(measure.get("nativeType"));
    }
  }

  private final ModelObject cube;
  private final ModelObject cubePackage;
  private final TableImport tables;
  private final Catalog catalog;
  private final LineageMaps maps;
  private final List<ModelObject> aliases = new ArrayList<>();
  final List<Computed> computed = new ArrayList<>();

  CubeImport(String name, ModelObject folder, TableImport tables, Catalog catalog, LineageMaps maps) {
    cubePackage = folder.addUnique(ModelObject.Role.namespaceElements,
        new ModelObject("TAVDesignPackage", name).set("nativeType", Labels.CUBE));
    cube = cubePackage.addUnique(
        ModelObject.Role.namespaceElements, new ModelObject("TAVCube", name).set("nativeType", Labels.CUBE));
    this.tables = tables;
    this.catalog = catalog;
    this.maps = maps;
  }

  ModelObject cube() { return cube; }

  List<ModelObject> aliases() { return aliases; }

  void importCube(Json definition) throws ImportException {
    cube.set("description", definition.text("description"));
    for (TableImport.Made table : tables.tables) addAlias(table);
    addMeasures();
    addKpis();
    for (Json perspective : definition.objects("perspectives")) {
      ModelObject synonym =
          new ModelObject("TAVSynonym", perspective.text("name")).set("nativeType", Labels.PERSPECTIVE);
      synonym.set("description", perspective.text("description"));
      catalog.keep(synonym, perspective, PERSPECTIVE_PLACED);
      cube.add(ModelObject.Role.synonyms, synonym);
    }
  }

  private void addAlias(TableImport.Made table) {
    ModelObject dimension = table.dimension();
    String description = dimension.get("description");
    ModelObject association = new ModelObject("TAVCubeDimensionAssociation", dimension.name());
    association.set("description", description).set("physicalName", table.dimension().name());
    association.refer("dimension", dimension);
    cube.add(ModelObject.Role.cubeDimensionAssociations, association);
    ModelObject alias =
        new ModelObject("TAVAliasClassifier", dimension.name()).set("nativeType", Labels.DIMENSION);
    alias.set("description", description);
    aliases.add(cubePackage.addUnique(ModelObject.Role.namespaceElements, alias));
    for (ModelObject attribute : dimension.parts(ModelObject.Role.features)) {
      ModelObject feature = new ModelObject("TAVAliasFeature", attribute.name());
      feature.set("description", attribute.get("description"));
      alias.addUnique(ModelObject.Role.features, feature);
      maps.link(feature, "", List.of(attribute));
    }
  }

  private void addMeasures() throws ImportException {
    ModelObject folder = null;
    for (TableImport.Made table : tables.tables) {
      List<Json> measures = table.definition().objects("measures");
      if (measures.isEmpty()) continue;
      if (folder == null) folder = addFolder(Labels.CALCULATED_MEASURES);
      ModelObject group = new ModelObject("TAVDimension", table.dimension().name());
      group.set("nativeType", Labels.CALCULATED_MEASURES);
      folder.addUnique(ModelObject.Role.namespaceElements, group);
      for (Json definition : measures) addMeasure(table, definition, group);
    }
  }

  private ModelObject addFolder(String name) {
    return cubePackage.addUnique(ModelObject.Role.namespaceElements,
        new ModelObject("TAVDesignPackage", name).set("nativeType", name));
  }

  private void addMeasure(TableImport.Made table, Json definition, ModelObject group) throws ImportException {
    String name = definition.text("name");
    ModelObject measure = new ModelObject("TAVMeasure", name).set("nativeType", Labels.CALCULATED_MEASURE);
    measure.set("description", definition.text("description"))
        .set("expression", definition.text("expression"));
    measure.set("hidden", definition.flag("isHidden"));
    measure.refer("type", catalog.type(definition.text("dataType")));
    group.addFeature(measure);
    catalog.keep(measure, definition, MEASURE_PLACED);
    if (tables.resolver.findMeasure(name) != null) tables.warnSameName("measure", name, cube);
    tables.resolver.addMeasure(name, measure);
    addComputed(table, definition, measure, measure.name());
  }

  /** The cube's own copy stands for the measure in the cube. */
  private void addComputed(TableImport.Made table, Json definition, ModelObject measure, String nameInCube) {
    ModelObject copy = new ModelObject("TAVMeasure", nameInCube);
    for (String attribute : List.of("description", "nativeType", "hidden"))
      copy.set(attribute, measure.get(attribute));
    copy.refer("type", measure.references().get("type"));
    cube.addFeature(copy);
    computed.add(new Computed(table, definition, measure, copy));
  }

  private void addKpis() throws ImportException {
    ModelObject folder = null;
    for (TableImport.Made table : tables.tables) {
      for (Json measure : table.definition().objects("measures")) {
        if (!measure.has("kpi")) continue;
        if (folder == null) folder = addFolder(Labels.KPIS);
        addKpi(table, measure, folder);
      }
    }
  }

  private void addKpi(TableImport.Made table, Json measure, ModelObject folder) throws ImportException {
    Json definition = measure.object("kpi");
    ModelObject kpi = new ModelObject("TAVDimension", measure.text("name")).set("nativeType", Labels.KPI);
    kpi.set("description", definition.text("description"));
    folder.addUnique(ModelObject.Role.namespaceElements, kpi);
    catalog.keep(kpi, definition, KPI_PLACED);
    String value = "[" + measure.text("name").replace("]", "]]") + "]";
    for (Labels.KpiPart part : Labels.KpiPart.values()) {
      boolean isValue = part == Labels.KpiPart.VALUE;
      String expression = isValue ? value : definition.text(KPI_MEMBERS.get(part));
      addPart(table, isValue ? definition : null, kpi, part, expression);
    }
  }

  private void addPart(
      TableImport.Made table, Json definition, ModelObject kpi, Labels.KpiPart part, String expression) {
    ModelObject measure = new ModelObject("TAVMeasure", part.text).set("nativeType", part.nativeType);
    measure.set("expression", expression);
    measure.refer("type", catalog.type(""));
    kpi.addFeature(measure);
    // The server keeps a KPI's parts as hidden measures, and expressions may name them.
    tables.resolver.addMeasure("_" + kpi.name() + " " + part.text, measure);
    addComputed(table, definition, measure, kpi.name() + " " + part.text);
  }

  void resolveExpressions() {
    for (Computed one : computed) {
      String text = one.measure.get("expression") == null ? "" : one.measure.get("expression");
      DaxLineage lineage = tables.resolver.resolveMeasure(text, one.table.names());
      tables.report(lineage, one.measure, one.measure.path());
      one.measure.set("unresolved", String.join("\n", lineage.unresolved));
      tables.link(one.measure, text, lineage);
      maps.link(one.copy, "", List.of(one.measure));
    }
  }
}

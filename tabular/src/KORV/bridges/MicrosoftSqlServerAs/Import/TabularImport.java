package KORV.bridges.MicrosoftSqlServerAs.Import;

import KORV.bridges.MicrosoftSqlServerAs.Import.json.ImportException;
import KORV.bridges.MicrosoftSqlServerAs.Import.json.Json;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Catalog;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Details;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Kinds;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.Labels;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.LineageMaps;
import KORV.bridges.MicrosoftSqlServerAs.Import.model.ModelObject;
import KORV.bridges.MicrosoftSqlServerAs.Import.tmdl.TmdlReader;
import java.util.ArrayList;
import java.util.List;
import java.util.Set;

/** Turns a tabular definition into a metadata model. */
final class TabularImport {
  private static final Set<String> COMMANDS = Set.of("create", "createOrReplace", "alter");
  private static final Set<String> DATABASE_PLACED = Set.of("name", "id", "description", "model");
  private static final Set<String> MODEL_PLACED =
      Set.of("name", "description", "dataSources", "tables", "perspectives");

  private final MessageOutput messages;
  private final String path;
  private final String format;
  private final ModelObject model = new ModelObject("TAVStoreModel", "");
  private final LineageMaps maps = new LineageMaps();
  private final Catalog catalog = new Catalog(model);
  private final Details details;

  /** Of a definition at a path, written in a format. `details` is null where nobody asks for them. */
  TabularImport(MessageOutput messages, String path, String format, Details details) {
    this.messages = messages;
    this.path = path;
    this.format = format;
    this.details = details;
  }

  ModelObject importDefinition(Json root) throws ImportException {
    Json database = findDatabase(root);
    checkLevel(database);
    Json definition = database.object("model");
    String name = database.has("name") ? database.text("name") : database.text("id");
    messages.status("QVT_SSXMLA_S0007", "Importing model '" + name + "' ...");
    String id = database.has("id") ? database.text("id") : name;
    model.set("name", name).set("description", database.text("description")).set("nativeId", id);
    model.set("nativeType", Labels.TABULAR_DATABASE).set("storeType", 1);
    addOrigin(database);
    catalog.keep(model, database, DATABASE_PLACED);
    importModel(definition);
    if (details != null) new DetailSettings(details).keepParts(model, database, DATABASE_PLACED);
    return model;
  }

  private Json findDatabase(Json root) throws ImportException {
    if (root.kind != Json.Kind.OBJECT) throw noDatabase(root);
    Json command = root;
    if (root.has("sequence")) {
      for (Json operation : root.object("sequence").objects("operations")) {
        if (operation.names.stream().anyMatch(COMMANDS::contains)) {
          command = operation;
          break;
        }
      }
      int others = root.object("sequence").objects("operations").size() - 1;
      if (details != null && others > 0) details.passOver(Kinds.Passed.otherCommands, others);
    }
    for (String name : COMMANDS.stream().sorted().toList()) {
      if (!command.has(name)) continue;
      Json body = command.object(name);
      Json database = body.get("database");
      if (database.kind == Json.Kind.OBJECT && database.has("model")) return database;
      throw noDatabase(body);
    }
    if (!command.has("model")) throw noDatabase(root);
    return command;
  }

  private static ImportException noDatabase(Json place) {
    return new ImportException(ImportException.DEFINITION, place.line, place.column,
        "no tabular database: expected \"model\", or \"create\", \"createOrReplace\" or \"alter\" with a "
            + "\"database\" that has one, alone or in a \"sequence\"");
  }

  private static void checkLevel(Json database) throws ImportException {
    Json level = database.get("compatibilityLevel");
    if (level.kind == Json.Kind.NULL) return;
    boolean number = level.kind == Json.Kind.OTHER && level.text.matches("[0-9]{1,9}");
    if (number && Integer.parseInt(level.text) >= TmdlReader.FIRST_LEVEL) return;
    throw new ImportException(ImportException.DEFINITION, level.line, level.column,
        "compatibility level " + level.display() + ": expected a number from " + TmdlReader.FIRST_LEVEL);
  }

  private void addOrigin(Json database) throws ImportException {
    ModelObject origin = new ModelObject("TAVMetadataOrigin", "MicrosoftSqlServerAsImport");
    origin.set("format", format).set("encoding", "UTF-8").set("path", path);
    origin.set("toolName", "SQL Server Analysis Services").set("vendorName", "Microsoft");
    origin.set("version", database.text("compatibilityLevel"));
    model.add(ModelObject.Role.metadataOrigins, origin);
  }

  private void importModel(Json definition) throws ImportException {
    ModelObject views = addFolder(Labels.DATA_SOURCE_VIEWS);
    PhysicalLayer physical = new PhysicalLayer(model, views, catalog, maps);
    messages.status("QVT_SSXMLA_S0012", "Importing data source views ...");
    for (Json dataSource : definition.objects("dataSources")) physical.addDataSource(dataSource);

    messages.status("QVT_SSXMLA_S0008", "Importing dimensions...");
    TableImport tables =
        new TableImport(definition, addFolder(Labels.DIMENSIONS), physical, catalog, maps, messages, details);
    tables.importTables();
    ModelObject shared =
        new ModelObject("TAVOlapSchema", "").set("description", definition.text("description"));
    model.add(ModelObject.Role.dataPackages, shared);
    shared.refer("importedNamespaceElements", tables.dimensions());

    messages.status("QVT_SSXMLA_S0010", "Importing cubes ...");
    String name = definition.has("name") ? definition.text("name") : "Model";
    messages.status("QVT_SSXMLA_S0011", "Importing cube '" + name + "' ...");
    CubeImport cube = new CubeImport(name, addFolder(Labels.CUBES), tables, catalog, maps);
    cube.importCube(definition);
    catalog.keep(cube.cube(), definition, MODEL_PLACED);
    addCubeSchema(cube);
    tables.resolveExpressions();
    cube.resolveExpressions();
    if (details == null) return;
    List<ModelObject> connections = model.parts(ModelObject.Role.storeConnections);
    new DetailImport(details, tables, cube).importDetails(definition, connections);
  }

  private void addCubeSchema(CubeImport cube) {
    ModelObject schema = new ModelObject("TAVOlapSchema", cube.cube().name());
    schema.set("description", cube.cube().get("description")).set("nativeType", Labels.CUBE);
    List<ModelObject> elements = new ArrayList<>(cube.aliases());
    elements.add(cube.cube());
    schema.refer("importedNamespaceElements", elements);
    model.add(ModelObject.Role.dataPackages, schema);
  }

  private ModelObject addFolder(String name) {
    ModelObject folder =
        new ModelObject("TAVDesignPackage", name).set("nativeType", name).set("folder", true);
    return model.addUnique(ModelObject.Role.designPackages, folder);
  }
}

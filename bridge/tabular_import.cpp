#include "bridge/tabular_import.h"

#include <array>

#include "bridge/catalogue/literals.h"
#include "framework/bridgelib/class_path.h"
#include "framework/java/java_bridge.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/serialization/multi_model_serialization.h"
#include "framework/std/java_path.h"
#include "framework/std/temporary_folder.h"
#include "framework/types/providers.h"
#include "framework/types/server_kinds.h"
#include "views/database_queries.h"

namespace {

constexpr const char* kMainClass = "KORV.bridges.MicrosoftSqlServerAs.Import.MicrosoftSqlServerAsImport";
constexpr const char* kDetailsOption = "BP_DETAILS";
constexpr std::array kArchives{"MicrosoftSqlServerAs.jar", "TAVStatisticsUtil.jar", "TAVSummaryUtil.jar",
                               "TAVEtlBridgeLib.jar", "Json/json-simple-1.1.1.jar"};

TAVString classPathOfImporter(TAVLog* log) {
  TAVString classPath;
  const TAVString folder = getTAVJavaPath();
  for (const char* archive : kArchives) appendClassPathElement(classPath, folder, archive, log);
  return classPath;
}

/// The importer is told of the file and whether details are wanted, and of nothing else that the host was
/// asked.
TAVOptionList optionsOfImporter(const TAVFile& inputFile) {
  TAVOptionList options;
  options.add(QVT_SSXMLA::BP_FILE.generateOption(true)).setValue(inputFile.getPath());
  if (tav::areDetailsWanted())
    options.add(TAVOption(kDetailsOption, "Details", "", OptionType::boolean, "true"));
  return options;
}

/// The model is taken out of the document, which is deleted.
TAVStoreModel* loadFrom(const TAVFile& folder, TAVLog* log, std::unique_ptr<tav::Details>& details) {
  TAVMultiModelSerialization serialization(log, folder, MixOptimizationLevel::none);
  const tav::Owned<TAVObject> root =
      serialization.load(serialization.getFile(), tav::kClassRanges[tav::classId<TAVMultiModel>].code, true);
  const auto* document = tav::as<TAVMultiModel>(root.get());
  auto* content = document ? tav::as<TAVModelContent>(document->contents.first()) : nullptr;
  auto* model = content ? tav::as<TAVStoreModel>(serialization.loadModel(*content)) : nullptr;
  if (!model) return nullptr;
  if (tav::areDetailsWanted()) details = serialization.takeDetails();
  static_cast<void>(model->removeContent().release());  // it is `model` itself, the caller's from now on
  return model;
}

/// What a connection reads, or null: most kinds of servers and files have no data store of their own. A
/// connection string that names no provider is one of SQL Server's.
const TAVDataStoreVersion* dataStoreOf(const TAVStoreConnection& connection) {
  const tav::ConnectionFacts facts = tav::factsOf(connection);
  const tav::ServerKind* kind = tav::serverKindOf(facts);
  if (kind == &tav::oracleKind()) return findDataStoreByProvider("OraOLEDB.Oracle");
  const bool isSqlServer = kind == &tav::sqlServerKind() || (!kind && facts.kind.empty());
  return isSqlServer ? findDataStoreByProvider("SQLNCLI11.1") : nullptr;
}

}  // namespace

TAVStoreModel* importTabularModel(TAVLog* log, const TAVFile& inputFile) {
  const tav::TemporaryFolder folder("MicrosoftSqlServerXMLAImport");
  TAVJavaBridge importer(kMainClass, classPathOfImporter(log), log, TAVJavaExe::JAVA_VERSION_6);
  importer.javaImport(folder.folder().getFile("main.xml"), optionsOfImporter(inputFile), nullptr);
  std::unique_ptr<tav::Details> details;
  TAVStoreModel* model = loadFrom(folder.folder(), log, details);
  if (!model) return nullptr;
  completeTabularModel(*model, log, details.get());
  tav::reportDetails(std::move(details));
  return model;
}

/// Adds what the importer leaves to the bridge, because XML definitions need it too: how connection strings
/// and SQL are read.
void completeTabularModel(TAVStoreModel& model, TAVLog* log, tav::Details* details) {
  for (TAVStoreConnection& connection : model.storeConnections) {
    if (!connection.dataStore.name.empty()) continue;
    if (const TAVDataStoreVersion* dataStore = dataStoreOf(connection)) setDataStore(&connection, dataStore);
  }
  tav::resolveDatabaseQueries(model, log, details);
}

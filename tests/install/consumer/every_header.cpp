// Takes something from every installed header that the library must bring: this program links when each of
// them declares only what the library shows. check_install.sh compares its includes with what is installed.
#include <iostream>
#include <vector>

#include "framework/api.h"
#include "framework/bridgelib/class_path.h"
#include "framework/bridgelib/input_files.h"
#include "framework/bridgelib/model_stamps.h"
#include "framework/bridgelib/names.h"
#include "framework/bridgelib/properties.h"
#include "framework/bridgelib/types.h"
#include "framework/details/detailed_model.h"
#include "framework/details/details.h"
#include "framework/details/kinds.h"
#include "framework/details/passed_over.h"
#include "framework/details/setting_words.h"
#include "framework/dom/dom.h"
#include "framework/dom/dom_name.h"
#include "framework/dom/element.h"
#include "framework/dom/unkept_content.h"
#include "framework/expression/analyzer.h"
#include "framework/expression/enumerations.h"
#include "framework/expression/language.h"
#include "framework/expression/layout.h"
#include "framework/expression/lexer.h"
#include "framework/expression/nodes.h"
#include "framework/expression/operators.h"
#include "framework/expression/parser.h"
#include "framework/expression/query.h"
#include "framework/expression/query_resolver.h"
#include "framework/expression/tree.h"
#include "framework/java/java_bridge.h"
#include "framework/java/java_exe.h"
#include "framework/model/class_info.h"
#include "framework/model/class_list.h"
#include "framework/model/collection.h"
#include "framework/model/data_store.h"
#include "framework/model/end_walk.h"
#include "framework/model/enumerations.h"
#include "framework/model/lineage_writer.h"
#include "framework/model/link.h"
#include "framework/model/model.h"
#include "framework/model/object.h"
#include "framework/model/owned.h"
#include "framework/model/reflection.h"
#include "framework/model/roles.h"
#include "framework/model/rows.h"
#include "framework/model/slot.h"
#include "framework/model/slots.h"
#include "framework/model/traversal.h"
#include "framework/model/tree_walk.h"
#include "framework/modelbridge/bridge_constants.h"
#include "framework/modelbridge/bridge_interface.h"
#include "framework/modelbridge/bridge_option_literal.h"
#include "framework/modelbridge/bridge_specification.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/serialization/model_reader.h"
#include "framework/serialization/model_schema.h"
#include "framework/serialization/model_writer.h"
#include "framework/serialization/multi_model_serialization.h"
#include "framework/serialization/passwords.h"
#include "framework/serialization/replacing_file.h"
#include "framework/std/array.h"
#include "framework/std/connection_string.h"
#include "framework/std/container.h"
#include "framework/std/date.h"
#include "framework/std/dll_interface.h"
#include "framework/std/dotted_name.h"
#include "framework/std/exception.h"
#include "framework/std/file.h"
#include "framework/std/file_reader.h"
#include "framework/std/hash_set.h"
#include "framework/std/hashtable.h"
#include "framework/std/interruption.h"
#include "framework/std/java_path.h"
#include "framework/std/json_text.h"
#include "framework/std/json_writer.h"
#include "framework/std/line_diff.h"
#include "framework/std/literal.h"
#include "framework/std/log.h"
#include "framework/std/mask.h"
#include "framework/std/option.h"
#include "framework/std/pointer_map.h"
#include "framework/std/printable.h"
#include "framework/std/sha256.h"
#include "framework/std/sized_text.h"
#include "framework/std/string.h"
#include "framework/std/temporary_folder.h"
#include "framework/std/text.h"
#include "framework/std/utf8.h"
#include "framework/std/vector.h"
#include "framework/types/data_store_version.h"
#include "framework/types/data_type_converter.h"
#include "framework/types/providers.h"
#include "framework/types/server_kinds.h"
#include "framework/types/type_names.h"
#include "lineage/address_map.h"
#include "lineage/coverage.h"
#include "lineage/database_address.h"
#include "lineage/differences.h"
#include "lineage/gap_reason.h"
#include "lineage/joined_graph.h"
#include "lineage/joined_search.h"
#include "lineage/joined_use.h"
#include "lineage/lineage_graph.h"
#include "lineage/lineage_tree.h"
#include "lineage/model_diff.h"
#include "lineage/node_search.h"
#include "lineage/subgraph.h"
#include "lineage/unused.h"
#include "lineage/walk_graph.h"

namespace {

/// What the library brings is there when it has an address.
std::size_t taken = 0;
template <class... F> void take(F*... functions) {
  taken += (std::size_t{functions != nullptr} + ...);
}

struct Log : TAVLog {
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

struct Analyzer : TAVExpressionAnalyzer {
  Analyzer()
      : TAVExpressionAnalyzer(nullptr, TAVExpressionToolType(TAVExpressionToolType::kDatabase),
                              TAVExpressionLangType(TAVExpressionLangType::kSql)) {}
  using TAVExpressionAnalyzer::getSrcElements;
  void getSrcElements(TAVElementNode* /*node*/, const TAVVector& /*scope*/, TAVVector& /*result*/) override {}
  TAVFeature* getDstFeature(TAVClassifier* /*of*/, const TAVString& /*name*/, int /*reserved*/) override {
    return nullptr;
  }
};

/// Every object of the model: its constructor, and all that its class's operations call.
template <class... Entries> std::size_t makeAll(tav::ClassList<Entries...> /*classes*/) {
  std::vector<tav::Owned<TAVObject>> objects;
  const auto add = [&]<class Entry>(Entry /*entry*/) {
    if constexpr (Entry::concrete) objects.push_back(tav::make<typename Entry::Type>());
  };
  (add(Entries{}), ...);
  return objects.size();
}

void takeModel() {
  take(&tav::findLink, &tav::linkObjects);
  taken += makeAll(tav::Classes{});
  auto dimension = tav::make<TAVDimension>("d");
  TAVLevel& level = TAVLevel::addDimension(tav::make<TAVLevel>("l"), *dimension);
  TAVLevelKey::addLevel(tav::make<TAVLevelKey>("k"), level)
      .addLevelAttribute(level.addFeature(tav::make<TAVLevelAttribute>("a")));
  dimension->addDefaultHierarchy(dimension->addHierarchy(tav::make<TAVHierarchy>("h")));
  TAVObjectCollector collector(75);
  dimension->depthTraversal(collector);
  tav::forEachObject(*dimension, [](const TAVObject& object) { taken += object.getMetaClass().size(); });
  tav::forEachAt(*tav::classInfo(dimension->classId()).parts[0].row, *dimension, [](TAVObject&) {});
  taken += tav::copyTree(*dimension)->getPath(true).str().size();
  taken += dimension->levels.contains(level) && dimension->levels.get("l") && dimension->levels[0];
  taken += static_cast<std::size_t>(TAVAggregationOperatorType(1).value() + TAVDataStore{}.major);
  take(&tav::classifierMapOf, &tav::featureMapOf, &tav::roleOf, &tav::isDefault, &tav::findClass);
}

void takeDetails() {
  tav::Details details;
  const auto cube = tav::make<TAVCube>("c");
  details.set(details.itemOf(*cube), "Language", "1033");
  take(&tav::settingWords, &tav::withoutLayout, &tav::lineDiff);
  taken += tav::DetailedModel(*tav::make<TAVStoreModel>(), &details).details->settings().size();
  taken +=
      tav::rowOf(tav::ObjectKind::namedSet).label.size() + tav::rowOf(tav::RelationKind::key).name.size();
  taken += tav::rowOf(tav::PassedOver::timeStamps).words.size();
  take(&tav::objectKindOf, &tav::relationKindOf, &tav::givesValue, &tav::passedOverOf, &tav::openNameStateOf);
}

void takeReading() {
  TAVDOM dom(nullptr);
  const TAVDOMElement& root = *dom.parseText("<a b='1'><c/></a>", "text");
  taken += root.getAttribute("b").size() + tav::hashName(root.getElement(0)->getTagName()) % 2;
  take(&tav::parseExpression, &tav::dump, &tav::parseQuery, &tav::placeInText);
  taken += sizeof(tav::ExpressionLanguage) + sizeof(tav::QueryResolver);
  Analyzer().parse(nullptr);
  take(&TAVJavaExe::find);
  TAVJavaBridge java("Main", "", nullptr, TAVJavaExe::JAVA_VERSION_6);
  take(&tav::loadModelText, &tav::isSavedModel, &tav::writeModelSchema, &tav::writeModel, &tav::saveModel,
       &tav::removeUnfinished);
  taken += sizeof(tav::Passwords);
  taken += TAVMultiModelSerialization(nullptr, TAVFile("none"), MixOptimizationLevel::none)
               .getFile()
               .getPath()
               .str()
               .size();
}

void takeBridges() {
  take(&appendClassPathElement, &testRequiredInputFiles, &generateMetadataOrigin, &removeQuotes,
       &getPhysicalName, &setPropertyValue, &factorizeTypes, &tav::isoTime, &setDataStore,
       &findDataStoreByProvider, &tav::findServerKind, &getDefaultLogicalName, &getBridgeSpecification,
       &TAVBridgeDllInterface::saveStoreModel, &tav::reportModel);
  taken += TAVDataTypeConverter(nullptr, TAVDataStoreVersion("MICROSOFT_DSV", 9, 0, 0), "none")
               .getImportTypeName("int")
               .size();
  taken +=
      TAVBridgeOptionLiteral("K", "Name", OptionType::text, "Text", nullptr, nullptr).getName().str().size();
  TAVBridgeSpecification().initialize("", "", "", "", "", "", "", false);
  taken += UNSUPPORTED_BRIDGE_OPERATION.getKey().str().size();
  tav::HostObserver observer;
}

void takeTexts() {
  take(&tav::mendedUtf8, &tav::appendUtf8, &tav::splitDottedName, &tav::maskPasswords, &tav::printable,
       &tav::appendJsonText, &tav::endUnfinishedWork, &getConnectionStringValue, &getTAVJavaPath,
       &buildStackTrace, &stringHashCode);
  std::string text;
  tav::JsonWriter(text).value("text");
  tav::PointerMap<int> numbers;
  taken += static_cast<std::size_t>(*numbers.tryEmplace(&text, 1).first);
  TAVVector vector;
  vector.add(nullptr, true, nullptr);
  TAVStringHashSet set(5);
  set.add(TAVDate(0).getPstTimestamp());
  TAVStringArray arguments;
  arguments.add(TAVString("a").trim());
  TAVTextLiteralsCollection literals("module", "collection");
  literals.init();
  taken += TAVParameterizedTextLiteral("K", "{0}").createParameterizedText(arguments).str().size();
  TAVOptionList options;
  options.add(TAVOption("K", "Name", "Text", OptionType::text, ""));
  tav::FileReader reader;
  taken += std::size_t{reader.open("none")} + std::size_t{TAVFile("none").exists()};
  const tav::TemporaryFolder folder("every-header");
  tav::ReplacingFile(folder.folder().getFile("out").getPath()).stream() << taken;
  Log().logEvent(TAVLogEvent("text", "ID", tav::kSeverityInfo, ""));
}

void takeLineage() {
  const auto model = tav::make<TAVStoreModel>("m");
  const tav::LineageGraph graph({*model, nullptr});
  taken += tav::findNodes(graph, "none", tav::LineageDirection::upstream).size();
  taken += tav::measureCoverage(graph).percent() + tav::wholeGraph(graph).nodes.size();
  taken += tav::AddressMap::parse("", "rules").text().size();
  taken += std::size_t{tav::compareModels(graph, graph).empty()} + tav::unnamedDatabase().server.size();
  for (const tav::UnusedGroup& group : tav::unusedGroups()) taken += tav::findUnused(graph, group).size();
  const tav::JoinedModels joined({{"first", &graph}, {"second", &graph}});
  taken += tav::lineageTree(joined, 0, tav::LineageWalk{}).size() + tav::JoinedNames(joined).nameOf(0).size();
  taken += tav::JoinedUse(joined).usedBeside(0).size();
  take(&tav::findStarts, &tav::gapReason, &tav::subgraphAround, &tav::catalogueName);
  taken += std::size_t{tav::Change{} == tav::Change{}};
}

}  // namespace

int main() {
  takeModel();
  takeDetails();
  takeReading();
  takeBridges();
  takeTexts();
  takeLineage();
  std::cout << (taken > 0) << '\n';
  return 0;
}

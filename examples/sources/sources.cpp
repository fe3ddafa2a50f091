// sources INPUT NAME: which columns of which database a measure or attribute comes from, one a line. INPUT is
// a saved model or a definition.
#include <dlfcn.h>

#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>

#include "framework/modelbridge/bridge_interface.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/serialization/model_reader.h"
#include "lineage/lineage_tree.h"
#include "lineage/node_search.h"

namespace {

using ModelUser = std::function<void(const tav::DetailedModel& model)>;

/// Shows what went wrong on the way, and keeps the rest to itself.
class Log : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    if (event.getSeverity() <= tav::kSeverityWarning) std::cerr << event.getText().view() << '\n';
  }
};

/// Takes the model from the plug-in when it is made. It lives no longer than the import.
class Observer : public tav::HostObserver {
 public:
  explicit Observer(const ModelUser& use) : use_(use) {}
  bool wantsDetails() override { return true; }
  bool onModel(const TAVStoreModel& model) override {
    use_({model, details()});
    return false;  // it need not be saved
  }

 private:
  const ModelUser& use_;
};

TAVImportBridgeDllInterface& loadPlugin() {
  void* library = dlopen(PLUGIN, RTLD_NOW);
  if (!library) throw std::runtime_error(dlerror());
  using Factory = TAVImportBridgeDllInterface* (*)();
  const auto factory =
      reinterpret_cast<Factory>(dlsym(library, "getTAVMicrosoftSqlServerXMLAImportInterface"));
  if (!factory) throw std::runtime_error(dlerror());
  return *factory();
}

void importDefinition(const char* path, const ModelUser& use) {
  TAVImportBridgeDllInterface& plugin = loadPlugin();
  TAVOptionList options;
  plugin.getOptionList(options);
  for (TAVOption& option : options)
    if (option.getType() == OptionType::file) option.setValue(path);
  TAVFile unused{TAVString()};
  Observer observer(use);
  Log log;
  plugin.run("MicrosoftSqlServerXMLAImport", unused, options, log);
}

void withModel(const char* path, const ModelUser& use) {
  if (!tav::isSavedModel(path)) return importDefinition(path, use);
  const tav::SavedModel saved = tav::loadSavedModel(path);
  use({*saved.model, saved.details.get()});
}

void printSources(const tav::LineageGraph& graph, const char* name) {
  const tav::NodeId start = tav::findNode(graph, name, tav::LineageDirection::upstream);
  for (const tav::LineageTreeLine& line : tav::lineageTree(graph, start, {.values = true})) {
    const bool isColumn = graph.node(line.node).kind == tav::NodeKind::databaseColumn;
    if (isColumn && line.state == tav::LineageTreeLine::State::whole)
      std::cout << graph.path(line.node) << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: sources INPUT NAME\n";
    return 2;
  }
  try {
    withModel(argv[1], [&](const tav::DetailedModel& model) {
      const tav::LineageGraph graph(model);
      printSources(graph, argv[2]);
    });
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}

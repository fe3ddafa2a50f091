#include "host/plugin.h"

#include <dlfcn.h>

#include <filesystem>

#include "framework/std/own_folder.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr const char* kLibrary = "libTAVMicrosoftSqlServerXMLAImport.so";
constexpr const char* kFactory = "getTAVMicrosoftSqlServerXMLAImportInterface";

[[noreturn]] void failToLoad(const std::string& cause) {
  tav::fail(tav::Message::pluginNotLoaded, {cause});
}

TAVImportBridgeDllInterface& load() {
  const std::filesystem::path library = tav::ownFolder() / kLibrary;
  // It stays loaded: messages and models may refer to it until the program ends.
  void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) failToLoad(dlerror());
  using Factory = TAVImportBridgeDllInterface* (*)();
  const auto factory = reinterpret_cast<Factory>(dlsym(handle, kFactory));
  if (!factory) failToLoad(library.string() + " has no factory " + kFactory);
  TAVImportBridgeDllInterface* plugin = factory();
  if (!plugin) failToLoad(library.string() + " gives no interface");
  return *plugin;
}

}  // namespace

TAVImportBridgeDllInterface& loadPlugin() {
  static TAVImportBridgeDllInterface& plugin = load();
  return plugin;
}

TAVOptionList optionsFor(const std::string& input) {
  TAVOptionList options;
  loadPlugin().getOptionList(options);
  for (TAVOption& option : options) {
    if (option.getType() != OptionType::file || option.getOpenMode() != OpenMode::read) continue;
    option.setValue(input);
    return options;
  }
  tav::fail(tav::Message::noFileOption);
}

}  // namespace host

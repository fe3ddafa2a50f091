#include "host/plugin.h"

#include <stdexcept>

#include "host/own_library.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr const char* kLibrary = "libTAVMicrosoftSqlServerXMLAImport.so";
constexpr const char* kFactory = "getTAVMicrosoftSqlServerXMLAImportInterface";

TAVImportBridgeDllInterface& load() try {
  return ownInterface<TAVImportBridgeDllInterface>(kLibrary, kFactory);
} catch (const std::runtime_error& error) {
  tav::fail(tav::Message::pluginNotLoaded, {error.what()});
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

#pragma once

// The plug-in, loaded at run time as any other host would load it.

#include "framework/modelbridge/bridge_interface.h"

namespace host {

/// The identifier under which the program runs the plug-in's bridge.
inline constexpr std::string_view kBridgeIdentifier = "MicrosoftSqlServerXMLAImport";

/// Loads the plug-in from the folder that the framework's library is in, once, and gives its interface
/// object. Throws Message::pluginNotLoaded when it is missing, broken or no plug-in.
TAVImportBridgeDllInterface& loadPlugin();

/// The plug-in's options for reading the file `input`.
TAVOptionList optionsFor(const std::string& input);

}  // namespace host

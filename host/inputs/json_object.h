#pragma once

// Files in JSON that lie around a definition, and what is wrong with them.

#include <nlohmann/json.hpp>
#include <string>

namespace host {

/// An object in JSON, or null and why there is none.
struct JsonObject {
  nlohmann::json json;
  std::string place;  ///< where a text is not well-formed: ":line:column"
  std::string cause;  ///< empty when there is an object
};

/// The object that a text in UTF-8 holds. Comments are passed over.
JsonObject parseJsonObject(const std::string& text);

/// The object in a file.
JsonObject readJsonObject(const std::string& path);

/// The text by the names that lead to it ("/metadata/displayName"); empty when there is none.
std::string jsonTextAt(const nlohmann::json& json, const char* pointer);

}  // namespace host

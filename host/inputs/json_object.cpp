#include "host/inputs/json_object.h"

#include <algorithm>
#include <string_view>

#include "host/inputs/file_text.h"

namespace host {
namespace {

using Json = nlohmann::json;

/// ":line:column" of the byte that is the `count`th.
std::string placeIn(std::string_view text, std::size_t count) {
  const std::string_view before = text.substr(0, count > 0 ? count - 1 : 0);
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
  return ":" + std::to_string(lines + 1) + ":" + std::to_string(column);
}

}  // namespace

JsonObject parseJsonObject(const std::string& text) {
  if (text.empty()) return {{}, {}, "it is empty"};
  try {
    Json json = Json::parse(text, nullptr, true, true);
    if (json.is_object()) return {std::move(json), {}, {}};
    return {{}, {}, "it holds no JSON object"};
  } catch (const Json::parse_error& error) {
    return {{}, placeIn(text, error.byte), "it is not well-formed JSON"};
  }
}

JsonObject readJsonObject(const std::string& path) {
  const FileText text = readFileText(path);
  if (!text.error.empty()) return {{}, {}, text.error};
  return parseJsonObject(text.text);
}

std::string jsonTextAt(const Json& json, const char* pointer) {
  const Json::json_pointer place(pointer);
  if (!json.is_structured() || !json.contains(place)) return {};
  const Json& value = json[place];
  return value.is_string() ? value.get<std::string>() : std::string();
}

}  // namespace host

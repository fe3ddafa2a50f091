#include "framework/types/data_type_converter.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<tav::TypeNameRow, 19> kSchemaNames{{{"base64Binary", "VARBINARY"},
                                                         {"boolean", "BOOLEAN"},
                                                         {"byte", "TINYINT"},
                                                         {"date", "DATE"},
                                                         {"dateTime", "TIMESTAMP"},
                                                         {"decimal", "DECIMAL"},
                                                         {"double", "DOUBLE"},
                                                         {"float", "REAL"},
                                                         {"hexBinary", "VARBINARY"},
                                                         {"int", "INTEGER"},
                                                         {"integer", "INTEGER"},
                                                         {"long", "BIGINT"},
                                                         {"short", "SMALLINT"},
                                                         {"string", "VARCHAR"},
                                                         {"time", "TIME"},
                                                         {"unsignedByte", "TINYINT"},
                                                         {"unsignedInt", "INTEGER"},
                                                         {"unsignedLong", "BIGINT"},
                                                         {"unsignedShort", "SMALLINT"}}};

static_assert(tav::isInOrder(kSchemaNames));

std::string_view find(std::span<const tav::TypeNameRow> rows, std::string_view name) noexcept {
  const auto row = std::lower_bound(rows.begin(), rows.end(), name, [](const auto& a, std::string_view b) {
    return tav::comesBefore(a.native, b);
  });
  return row == rows.end() || tav::comesBefore(name, row->native) ? std::string_view() : row->name;
}

}  // namespace

TAVDataTypeConverter::TAVDataTypeConverter(TAVLog* log, const TAVDataStoreVersion& dataStoreVersion,
                                           const TAVString& toolName)
    : storeNames_(dataStoreVersion.getTypeNames()) {
  if (toolName == TAVDataTypeConstants::TOOL_MICROSOFT_DSV) {
    toolNames_ = kSchemaNames;
  } else if (log) {
    log->logEvent({"The type names of the tool '" + toolName + "' are not known.", "TAVTYPES_W0001",
                   tav::kSeverityWarning, ""});
  }
}

std::string_view TAVDataTypeConverter::getImportTypeName(std::string_view nativeTypeName) const {
  const std::size_t colon = nativeTypeName.find(':');
  if (colon == std::string_view::npos) {
    const std::string_view name = find(storeNames_, nativeTypeName);
    if (!name.empty()) return name;
  }
  const std::string_view name =
      find(toolNames_, colon == std::string_view::npos ? nativeTypeName : nativeTypeName.substr(colon + 1));
  return name.empty() ? tav::kUndefinedType : name;
}

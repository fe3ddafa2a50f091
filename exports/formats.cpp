#include "exports/formats.h"

#include <algorithm>
#include <array>

namespace tav {

extern const ExportFormat kCsvFormat;
extern const ExportFormat kDatahubFormat;
extern const ExportFormat kDotFormat;
extern const ExportFormat kJsonFormat;
extern const ExportFormat kMermaidFormat;
extern const ExportFormat kOpenLineageFormat;
extern const ExportFormat kSqliteFormat;

namespace {

constexpr std::array kFormats{&kJsonFormat,   &kOpenLineageFormat, &kDatahubFormat, &kCsvFormat,
                              &kSqliteFormat, &kDotFormat,         &kMermaidFormat};

}  // namespace

std::span<const ExportFormat* const> exportFormats() noexcept {
  return kFormats;
}

const ExportFormat* findExportFormat(std::string_view name) noexcept {
  const auto* format = std::find_if(kFormats.begin(), kFormats.end(),
                                    [&](const ExportFormat* row) { return row->name == name; });
  return format == kFormats.end() ? nullptr : *format;
}

}  // namespace tav

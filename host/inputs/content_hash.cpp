#include "host/inputs/content_hash.h"

#include <filesystem>
#include <vector>

#include "framework/std/file_reader.h"
#include "framework/std/sha256.h"
#include "host/inputs/folder.h"

namespace host {
namespace {

class Hash : public tav::Sha256 {
 public:
  /// A text whose end counts, so that two that share their letters otherwise differ.
  void addText(std::string_view text) {
    add(std::to_string(text.size()) + ":");
    add(text);
  }
  /// Whether the file could be read to its end.
  bool addFile(const std::string& path) {
    tav::FileReader file;
    if (!file.open(path)) return false;
    addText(std::to_string(file.getSize()));
    std::vector<char> chunk(std::size_t{1} << 18);
    for (std::size_t size = 0; (size = file.read(chunk.data(), chunk.size())) > 0;) add({chunk.data(), size});
    return file.getError().empty();
  }
};

/// Whether all files of a report could be read.
bool addReport(const ReportPlace& report, Hash& hash) {
  hash.addText(report.name);
  if (report.isArchive) return hash.addFile(report.path);
  const ReportFiles files(report);
  for (const std::string& name : files.names()) {
    hash.addText(name);
    if (!hash.addFile(files.pathOf(name))) return false;
  }
  return true;
}

}  // namespace

std::string textHash(std::string_view text) {
  Hash hash;
  hash.add(text);
  return hash.finish();
}

std::string contentHash(const Input& input) {
  Hash hash;
  hash.addText(input.nameOfModel(""));
  for (const ReportPlace& report : input.reports())
    if (!addReport(report, hash)) return {};
  std::error_code ignored;  // what cannot be asked for cannot be read either
  if (!std::filesystem::is_directory(input.path(), ignored))
    return hash.addFile(input.path()) ? hash.finish() : std::string();
  for (const std::string& file : partsOfDefinition(input.path())) {
    hash.addText(std::filesystem::path(file).lexically_relative(input.path()).string());
    if (!hash.addFile(file)) return {};
  }
  return hash.finish();
}

}  // namespace host

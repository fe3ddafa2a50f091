#include "host/inputs/container.h"

#include <zip.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "host/inputs/file_text.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr const char* kDefinition = "DataModelSchema";
constexpr std::size_t kChunk = std::size_t{1} << 20;
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 30;   // the largest known have some ten megabytes
constexpr std::uint64_t kFreeBytes = std::uint64_t{16} << 20;  // that may grow at any rate
constexpr std::uint64_t kMostGrowth = 200;                     // definitions grow some twenty times

struct CloseArchive {
  void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct CloseEntry {
  void operator()(zip_file_t* entry) const noexcept { zip_fclose(entry); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;

[[noreturn]] void failToRead(const std::string& name, std::string_view cause) {
  tav::fail(tav::Message::containerNotRead, {name, cause});
}

Archive openArchive(const std::string& path, const std::string& name) {
  int code = 0;
  Archive archive(zip_open(path.c_str(), ZIP_RDONLY, &code));
  if (archive) return archive;
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  const std::string cause = zip_error_strerror(&error);
  zip_error_fini(&error);
  failToRead(name, cause);
}

bool holds(zip_t& archive, const char* entry) {
  return zip_name_locate(&archive, entry, 0) >= 0;
}

std::string unpack(zip_t& archive, const std::string& name) {
  zip_stat_t size;
  zip_stat_init(&size);
  const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen(&archive, kDefinition, 0));
  if (!entry || zip_stat(&archive, kDefinition, 0, &size) != 0) failToRead(name, zip_strerror(&archive));
  std::string bytes;
  for (;;) {
    const std::size_t had = bytes.size();
    bytes.resize(had + kChunk);
    const zip_int64_t count = zip_fread(entry.get(), bytes.data() + had, kChunk);
    if (count < 0) failToRead(name, zip_error_strerror(zip_file_get_error(entry.get())));
    bytes.resize(had + static_cast<std::size_t>(count));
    if (count == 0) return bytes;
    if (bytes.size() > kMostBytes ||
        (bytes.size() > kFreeBytes && bytes.size() / kMostGrowth > size.comp_size))
      failToRead(name, "its definition is unpacked to more than a definition has");
  }
}

/// What an archive without a definition is, and what to do.
std::string causeWithout(zip_t& archive) {
  if (holds(archive, "DataModel")) {
    return "a report that is saved with its data, the model in binary form; in Power BI Desktop, save it as "
           "a "
           "template (.pbit) or as a project (.pbip)";
  }
  if (holds(archive, "Report/Layout") || holds(archive, "Connections"))
    return "a report without a model of its own; give the definition of the model that it is connected to";
  if (holds(archive, "xl/workbook.xml")) return "an Excel workbook, which is no definition that can be read";
  if (holds(archive, "word/document.xml")) return "a Word document, which is no definition";
  return "a zip archive without a model (DataModelSchema); unpack it and name the definition in it";
}

/// Why a template has no model; empty when it has one, or is for the importer to judge.
std::string causeOfEmptiness(const std::string& definition) {
  constexpr int kDepthOfTables = 3;
  const auto outline = nlohmann::json::parse(
      definition,
      [](int depth, nlohmann::json::parse_event_t /*event*/, nlohmann::json& /*value*/) {
        return depth <= kDepthOfTables;
      },
      false);
  if (!outline.is_object() || !outline.contains("model") || !outline["model"].is_object()) return {};
  if (!outline["model"].contains("tables"))
    return "a template without a model: its report is connected to a model elsewhere; give the definition of "
           "that";
  if (outline["model"]["tables"].empty()) return "a template whose model has no tables";
  return {};
}

}  // namespace

bool isContainer(std::string_view beginning) {
  return beginning.starts_with("PK\x03\x04") || beginning.starts_with("PK\x05\x06");
}

Container readContainer(const std::string& path, const std::string& name) {
  const Archive archive = openArchive(path, name);
  if (!holds(*archive, kDefinition)) return {{}, causeWithout(*archive)};
  Container container{asUtf8(unpack(*archive, name)), {}};
  container.cause = causeOfEmptiness(container.definition);
  return container;
}

}  // namespace host

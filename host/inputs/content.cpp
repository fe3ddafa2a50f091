#include "host/inputs/content.h"

#include <algorithm>
#include <array>

#include "framework/std/file_reader.h"
#include "framework/std/text.h"
#include "host/inputs/container.h"
#include "host/inputs/extension.h"
#include "host/inputs/file_text.h"

namespace host {
namespace {

constexpr std::size_t kBeginning = std::size_t{64} << 10;
constexpr const char* kDatabaseExtension = ".database";  // the part of a project that is no object's
constexpr std::string_view kProjectTag = "Project";
constexpr std::string_view kDesignerMark = "DataWarehouse/Designer";

/// What a sentence is told by: the first bytes of a file or the root element of a document.
struct Sign {
  std::string_view sign;
  std::string_view sentence;
};

constexpr std::array kSignatures{
    Sign{"%PDF", "a PDF document, which is no definition"},
    Sign{"\xD0\xCF\x11\xE0", "a file of an older Office program, which is no definition"},
    Sign{"\x1F\x8B", "a compressed file; unpack it and name the definition in it"},
    Sign{"BZh", "a compressed file; unpack it and name the definition in it"},
    Sign{"\xFD"
         "7zXZ",
         "a compressed file; unpack it and name the definition in it"},
    Sign{"7z\xBC\xAF", "an archive; unpack it and name the definition in it"},
    Sign{"Rar!", "an archive; unpack it and name the definition in it"},
    Sign{"SQLite format 3",
         "a database of SQLite; name the definition or the saved model that was exported to it"},
    Sign{"STREAM_STORAGE_SIGNATURE",
         "a backup or the data of a model, in binary form; restore it and script the database as XMLA"},
    Sign{"\x7F"
         "ELF",
         "a program, which is no definition"},
};

constexpr std::string_view kPartOfProject =
    "one object of a multidimensional project; name the project by its .dwproj file or its folder";
constexpr std::string_view kSettingsOfBuild =
    "settings that a project was built with; name the project (.dwproj) or its database (.asdatabase)";

constexpr std::array kRoots{
    Sign{"Dimension", kPartOfProject},
    Sign{"Cube", kPartOfProject},
    Sign{"DataSource", kPartOfProject},
    Sign{"DataSourceView", kPartOfProject},
    Sign{"MiningStructure", kPartOfProject},
    Sign{"Role", kPartOfProject},
    Sign{"DeploymentTarget", kSettingsOfBuild},
    Sign{"DeploymentOptions", kSettingsOfBuild},
    Sign{"ConfigurationSettings", kSettingsOfBuild},
    Sign{kProjectTag, "a project of another kind; name the definition in it, such as its model.bim"},
    Sign{
        "Report",
        "a paginated report, which is no definition; name the definition of the model that it reads, and the "
        "report with --reports"},
    Sign{"DTS:Executable", "a package of Integration Services, which is no definition"},
    Sign{"html", "a page of HTML, which is no definition"},
    Sign{"svg", "a picture, which is no definition"},
};

/// The root elements of documents that may define a database.
constexpr std::array<std::string_view, 4> kCommands{"Create", "Batch", "Alter", "Execute"};

/// The name in the first start tag; empty when the text begins with no markup or shows none.
std::string_view rootTag(std::string_view text) {
  for (;;) {
    text = text.substr(std::min(text.size(), tav::skipBlanks(text, 0)));
    if (!text.starts_with('<')) return {};
    const std::string_view close = text.starts_with("<!--") ? "-->" : ">";
    if (!text.starts_with("<?") && !text.starts_with("<!")) {
      const std::size_t end = text.find_first_of(" \t\r\n/>");
      return end == text.npos ? std::string_view() : text.substr(1, end - 1);
    }
    const std::size_t end = text.find(close);
    if (end == text.npos) return {};
    text.remove_prefix(end + close.size());
  }
}

bool namesElement(std::string_view text, std::string_view name) {
  const std::string tag = '<' + std::string(name);
  for (std::size_t at = text.find(tag); at != text.npos; at = text.find(tag, at + 1)) {
    const std::size_t end = at + tag.size();
    if (end < text.size() && std::string_view(" \t\r\n/>").find(text[end]) != text.npos) return true;
  }
  return false;
}

bool isJsonDefinition(std::string_view text, const std::string& path) {
  if (hasExtension(path, ".bim") || hasExtension(path, ".xmla") || hasExtension(path, ".tmsl")) return true;
  return text.find("\"compatibilityLevel\"") != text.npos && text.find("\"model\"") != text.npos;
}

bool isCalledDefinition(const std::string& path) {
  constexpr std::array kExtensions{".asdatabase", ".bim", ".pbit", ".tmsl", ".xmla"};
  return std::any_of(kExtensions.begin(), kExtensions.end(),
                     [&](const char* extension) { return hasExtension(path, extension); });
}

/// Files of settings begin with a bracket as well, but with a word in it.
bool isJsonArray(std::string_view text) {
  if (!text.starts_with('[')) return false;
  const std::string_view inside = text.substr(tav::skipBlanks(text, 1));
  return !inside.empty() && std::string_view("[]{\"-0123456789").find(inside.front()) != inside.npos;
}

/// What files of reports in JSON have and no definition has.
constexpr std::array<std::string_view, 5> kReportSigns{"\"visualContainers\"", "\"layoutOptimization\"",
                                                       "\"resourcePackages\"", "/item/report/definition/",
                                                       "\"datasetReference\""};

bool isReport(std::string_view text) {
  return text.starts_with('{') &&
         std::any_of(kReportSigns.begin(), kReportSigns.end(),
                     [&](std::string_view sign) { return text.find(sign) != text.npos; });
}

/// Whether a text begins like XML, JSON or TMDL, which begins with a word or the description of something.
bool mayBeDefinition(std::string_view text) {
  const char first = text.front();
  return first == '<' || first == '{' || text.starts_with("///") || (first >= 'a' && first <= 'z');
}

}  // namespace

FileText readBeginning(const std::string& path) {
  tav::FileReader file;
  if (!file.open(path)) return {{}, file.getError()};
  std::string bytes(kBeginning, '\0');
  bytes.resize(file.read(bytes.data(), bytes.size()));
  return {asUtf8(std::move(bytes)), file.getError()};
}

bool isProject(std::string_view beginning) {
  return rootTag(beginning) == kProjectTag && beginning.find(kDesignerMark) != beginning.npos;
}

std::string foreignContent(std::string_view beginning, const std::string& path) {
  for (const Sign& signature : kSignatures)
    if (beginning.starts_with(signature.sign)) return std::string(signature.sentence);
  const std::string_view text = tav::trimmed(beginning);
  const std::string_view root = rootTag(text);
  for (const Sign& known : kRoots)
    if (root == known.sign) return std::string(known.sentence);
  if (hasExtension(path, kDatabaseExtension)) return std::string(kPartOfProject);
  if (isReport(text) && !isJsonDefinition(text, path))
    return "a part of a report, which is no definition; name the folder of the report or of its model";
  if (isJsonArray(text))
    return "an array in JSON, where a definition is an object; name a .bim or a script of the model";
  if (!text.empty() && !mayBeDefinition(text)) {
    return "neither XML nor JSON nor TMDL; name a definition in one of these, a project, a template (.pbit) "
           "or a folder of one of them";
  }
  return {};
}

bool isDefinition(const std::string& path) {
  if (hasExtension(path, kDatabaseExtension)) return false;
  const auto [beginning, error] = readBeginning(path);
  if (!error.empty()) return isCalledDefinition(path);
  if (isContainer(beginning)) return hasExtension(path, ".pbit");
  const std::string_view text = tav::trimmed(beginning);
  if (text.starts_with('{')) return isJsonDefinition(text, path);
  const std::string_view root = rootTag(text);
  if (root == "Database") return true;
  return std::find(kCommands.begin(), kCommands.end(), root) != kCommands.end() &&
         namesElement(text, "Database");
}

}  // namespace host

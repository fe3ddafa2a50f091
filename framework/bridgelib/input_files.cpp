#include "framework/bridgelib/input_files.h"

#include <algorithm>
#include <filesystem>

#include "framework/std/file_reader.h"

namespace {

/// What is wrong with a file; both are empty when nothing is.
struct Fault {
  const char* identifier = "";
  std::string text;
};

bool listsExtension(const TAVOption& option, const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  const auto& extensions = option.getExtensions();
  return extensions.empty() ||
         std::any_of(extensions.begin(), extensions.end(), [&](const TAVString& listed) {
           return listed.equals(std::string_view(extension).substr(extension.empty() ? 0 : 1), false);
         });
}

std::string joinedExtensions(const TAVOption& option) {
  std::string text;
  for (const TAVString& extension : option.getExtensions())
    text += (text.empty() ? "" : ", ") + extension.str();
  return text;
}

Fault unreadable(const std::string& path, const std::string& cause) {
  return {"TAVBRIDGE_E0016", "The file '" + path + "' cannot be read: " + cause + "."};
}

Fault testContent(const std::string& path) {
  tav::FileReader file;
  char first = '\0';
  const bool empty = !file.open(path) || file.read(&first, 1) == 0;
  if (!file.getError().empty()) return unreadable(path, file.getError());
  if (empty) return {"TAVBRIDGE_E0017", "The file '" + path + "' is empty."};
  return {};
}

Fault testPath(const std::string& path, bool acceptFolders) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::file_type type = fs::status(path, error).type();
  if (type == fs::file_type::not_found) return {"TAVBRIDGE_E0013", "The file '" + path + "' does not exist."};
  if (type == fs::file_type::none) return unreadable(path, error.message());
  if (type == fs::file_type::directory && acceptFolders) return {};
  if (type == fs::file_type::directory) return {"TAVBRIDGE_E0014", "'" + path + "' is a folder, not a file."};
  if (type != fs::file_type::regular) return {"TAVBRIDGE_E0015", "'" + path + "' is no regular file."};
  return testContent(path);
}

Fault testOption(const TAVOption& option, bool acceptFolders) {
  const std::string path = option.getValue().str();
  if (!path.empty()) return testPath(path, acceptFolders);
  if (!option.isMandatory()) return {};
  return {"TAVBRIDGE_E0012", "No file is given for the option '" + option.getName().str() + "'."};
}

/// What a user should know of a file that will do.
Fault testName(const TAVOption& option) {
  const std::string path = option.getValue().str();
  std::error_code ignored;  // whoever cannot be asked is no folder
  if (path.empty() || std::filesystem::is_directory(path, ignored) || listsExtension(option, path)) return {};
  return {"TAVBRIDGE_W0018", "The name of the file '" + path +
                                 "' ends in none of the usual extensions: " + joinedExtensions(option) + "."};
}

}  // namespace

bool testRequiredInputFiles(const TAVOptionList& options, TAVLog& log, bool acceptFolders) {
  bool good = true;
  const auto report = [&log](const Fault& fault, std::int32_t severity) {
    if (!fault.text.empty()) log.logEvent({fault.text, fault.identifier, severity, ""});
    return fault.text.empty();
  };
  for (const TAVOption& option : options) {
    if (option.getType() != OptionType::file || option.getOpenMode() != OpenMode::read) continue;
    if (report(testOption(option, acceptFolders), tav::kSeverityError))
      report(testName(option), tav::kSeverityWarning);
    else
      good = false;
  }
  return good;
}

#include "host/inputs/listing.h"

#include <algorithm>
#include <system_error>

namespace host {
namespace {

namespace fs = std::filesystem;

void append(std::vector<fs::path>& paths, std::vector<fs::path>& links) {
  std::sort(paths.begin(), paths.end());
  std::sort(links.begin(), links.end());
  paths.insert(paths.end(), links.begin(), links.end());
}

}  // namespace

Listing::Listing(const fs::path& folder) {
  std::vector<fs::path> linkedFolders;
  std::vector<fs::path> linkedFiles;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;  // a link that leads nowhere is neither
    if (entry->is_directory(ignored))
      (entry->is_symlink(ignored) ? linkedFolders : folders).push_back(entry->path());
    else if (entry->is_regular_file(ignored))
      (entry->is_symlink(ignored) ? linkedFiles : files).push_back(entry->path());
  }
  if (error) cause = error.message();
  append(folders, linkedFolders);
  append(files, linkedFiles);
}

std::string causeOfUnlisted(const fs::path& folder) {
  std::error_code ignored;  // what cannot be asked for is none
  return fs::is_directory(folder, ignored) ? Listing(folder).cause : std::string();
}

}  // namespace host

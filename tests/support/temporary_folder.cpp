#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace tav::test {
namespace {

constexpr std::string_view kFile = "@ ";

bool leadsOut(const std::filesystem::path& name) {
  return name.is_absolute() || std::find(name.begin(), name.end(), "..") != name.end();
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "xmla-test-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder can be made");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;  // a leftover is no fault of what was tested
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
  const std::filesystem::path file = path_ / name;
  std::ofstream(file, std::ios::binary) << content;
  return file.string();
}

void TemporaryFolder::writeFiles(std::string_view files) const {
  for (std::size_t at = files.find(kFile); at != files.npos;) {
    const std::size_t next = files.find("\n@ ", at);
    const std::string_view file = files.substr(at + kFile.size(), next - at - kFile.size());
    const std::size_t line = std::min(file.find('\n'), file.size());
    const std::filesystem::path name(file.substr(0, line));
    std::error_code ignored;  // what cannot be a file is not there
    if (!leadsOut(name)) {
      std::filesystem::create_directories((path_ / name).parent_path(), ignored);
      static_cast<void>(write(name.string(), file.substr(std::min(line + 1, file.size()))));
    }
    at = next == files.npos ? next : next + 1;
  }
}

}  // namespace tav::test

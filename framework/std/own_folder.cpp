#include "framework/std/own_folder.h"

#include <dlfcn.h>

#include "framework/std/exception.h"

namespace tav {

std::filesystem::path ownFolder() {
  Dl_info library{};
  std::error_code error = std::make_error_code(std::errc::no_such_file_or_directory);
  std::filesystem::path place;
  if (dladdr(reinterpret_cast<const void*>(&ownFolder), &library) != 0 && library.dli_fname)
    place = std::filesystem::canonical(library.dli_fname, error);
  if (error) fail("TAVSTD_F0004", "The framework's library cannot be located: " + error.message());
  return place.parent_path();
}

}  // namespace tav

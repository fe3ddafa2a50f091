#include "framework/std/java_path.h"

#include <dlfcn.h>

#include <filesystem>

#include "framework/std/exception.h"

TAVString getTAVJavaPath() {
  Dl_info library{};
  std::error_code error = std::make_error_code(std::errc::no_such_file_or_directory);
  std::filesystem::path place;
  // Links are followed first: a link to the library elsewhere does not move the tree that it belongs to.
  if (dladdr(reinterpret_cast<const void*>(&getTAVJavaPath), &library) != 0 && library.dli_fname)
    place = std::filesystem::canonical(library.dli_fname, error);
  if (error) tav::fail("TAVSTD_F0004", "The framework's library cannot be located: " + error.message());
  return (place.parent_path().parent_path() / "share/xmla-bridge/java").string();
}

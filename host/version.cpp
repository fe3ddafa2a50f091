#include "host/version.h"

#include <curl/curl.h>
#include <expat.h>
#include <fmt/format.h>
#include <zip.h>

#include <nlohmann/json.hpp>
#include <string_view>

#include "exports/sqlite_database.h"
#include "framework/std/text.h"
#include "host/command_line.h"

namespace host {
namespace {

constexpr int kFmtMajor = 10000;
constexpr int kFmtMinor = 100;

std::string fmtVersion() {
  return fmt::format("{}.{}.{}", FMT_VERSION / kFmtMajor, FMT_VERSION / kFmtMinor % kFmtMinor,
                     FMT_VERSION % kFmtMinor);
}

std::string expatVersion() {
  const XML_Expat_Version version = XML_ExpatVersionInfo();
  return fmt::format("{}.{}.{}", version.major, version.minor, version.micro);
}

std::string jsonVersion() {
  return fmt::format("{}.{}.{}", NLOHMANN_JSON_VERSION_MAJOR, NLOHMANN_JSON_VERSION_MINOR,
                     NLOHMANN_JSON_VERSION_PATCH);
}

}  // namespace

std::string versionText() {
  return fmt::format(
      "xmla-bridge " XMLA_VERSION
      "\n"
      "Build      " XMLA_BUILD
      "\n"
      "Libraries  {}, curl {}, Expat {}, fmt {}, libzip {}, nlohmann-json {}, SQLite {}, utf8proc {}",
      commandLineLibrary(), curl_version_info(CURLVERSION_NOW)->version, expatVersion(), fmtVersion(),
      zip_libzip_version(), jsonVersion(), tav::sqliteVersion(), tav::caseFoldingVersion());
}

}  // namespace host

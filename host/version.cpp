#include "host/version.h"

#include <expat.h>
#include <fmt/format.h>

#include <exception>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "exports/sqlite_database.h"
#include "framework/std/text.h"
#include "host/command_line.h"
#include "host/inputs/archive.h"
#include "host/lineage_post.h"

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

/// What a library that is loaded on demand says of its version. It may not be installed.
template <class Version> std::string versionIfLoaded(Version version) try {
  return version();
} catch (const std::exception&) {
  return "missing";
}

}  // namespace

std::string versionText() {
  const std::string curl = versionIfLoaded([] { return posting().httpVersion(); });
  const std::string zip = versionIfLoaded([] { return archives().libraryVersion(); });
  return fmt::format(
      "xmla-bridge " XMLA_VERSION
      "\n"
      "Build      " XMLA_BUILD
      "\n"
      "Libraries  {}, curl {}, Expat {}, fmt {}, libzip {}, nlohmann-json {}, SQLite {}, utf8proc {}",
      commandLineLibrary(), curl, expatVersion(), fmtVersion(), zip, jsonVersion(), tav::sqliteVersion(),
      tav::caseFoldingVersion());
}

}  // namespace host

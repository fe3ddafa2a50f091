# cmake -D SOURCE=ROOT -D OUTPUT=SOURCE -P build_time.cmake: writes the function that gives the build time:
# SOURCE_DATE_EPOCH where the environment sets it, else the time of the last commit. Outside of a checkout the
# files' own time counts, which an archive of a commit takes from the commit.
set(time "$ENV{SOURCE_DATE_EPOCH}")
if(time STREQUAL "" AND EXISTS ${SOURCE}/.git)
  execute_process(COMMAND git -C ${SOURCE} log -1 --format=%ct
                  OUTPUT_VARIABLE time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT time MATCHES "^[0-9]+$")
  file(TIMESTAMP ${SOURCE}/CMakeLists.txt time "%s" UTC)
endif()
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT [[
#include "bridge/catalogue/build_time.h"

std::int64_t tav::getBuildTime() noexcept {
  return @time@;
}
]])

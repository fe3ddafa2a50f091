# cpack --config build/CPackConfig.cmake -B dist: what cmake --install puts under a prefix, as a Debian package and as an
# archive that can be unpacked anywhere, each with its checksum beside it.
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME xmla-bridge)
set(CPACK_PACKAGE_VENDOR xmla-bridge)
set(CPACK_PACKAGE_CONTACT "xmla-bridge maintainers <maintainers@xmla-bridge.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Metadata models with lineage from Analysis Services definitions")
set(CPACK_PACKAGE_DESCRIPTION
    "Reads XMLA scripts, build files, projects, tabular JSON and TMDL of Analysis Services without the server, and tells\
 where each number comes from and what depends on it.")
set(CPACK_PACKAGE_CHECKSUM SHA256)
string(TOLOWER ${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR} CPACK_SYSTEM_NAME)
set(CPACK_STRIP_FILES ON)
set(CPACK_CUSTOM_INSTALL_VARIABLES "XMLA_PACKAGING=ON")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
# Tabular definitions are imported in Java; all else works without it.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-jre-headless (>= 2:1.17) | openjdk-17-jre-headless")
# The package of Python is for the one of the system.
if(XMLA_PYTHON)
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS "python3 (>= 3.11), python3 (<< 3.12)")
endif()
include(CPack)

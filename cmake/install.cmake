# cmake --install puts the tree of the build folder under the prefix, with what people and other programs need
# beside it: headers, a CMake package, the manual page and completions. The program finds its parts from its own
# place, so the installed tree can be moved.
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/xmlaBridge)

target_compile_features(tav_framework INTERFACE cxx_std_20)

install(TARGETS tav_framework tav_lineage tav_messages xmla_import EXPORT xmlaBridgeTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION include/xmla-bridge)
install(TARGETS xmla_posting xmla_archives LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS xmla-bridge RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(EXPORT xmlaBridgeTargets NAMESPACE xmlaBridge:: DESTINATION ${package_folder})
configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/xmlaBridgeConfig.cmake.in ${PROJECT_BINARY_DIR}/xmlaBridgeConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/xmlaBridgeConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/xmlaBridgeConfig.cmake ${PROJECT_BINARY_DIR}/xmlaBridgeConfigVersion.cmake
        DESTINATION ${package_folder})

install(FILES docs/xmla-bridge.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES docs/model.xsd exports/postgresql.sql DESTINATION ${CMAKE_INSTALL_DATADIR}/xmla-bridge)
install(FILES host/completion/xmla-bridge.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME xmla-bridge)
# The zsh of Debian looks for what packages bring in another folder than for what is built from source.
foreach(folder site-functions vendor-completions)
  install(FILES host/completion/_xmla-bridge DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${folder})
endforeach()
install(FILES LICENSE README.md CHANGELOG.md packaging/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/xmla-bridge)

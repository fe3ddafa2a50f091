# add_build_time(TARGET): gives a target the source that build_time.cmake writes. No file tells when the time
# changes, because the environment may: so every build looks it up, and what depends on it is built again only when
# it has changed.
function(add_build_time target)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/build_time.cpp)
  add_custom_target(build_time
    COMMAND ${CMAKE_COMMAND} -D SOURCE=${PROJECT_SOURCE_DIR} -D OUTPUT=${source}
            -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/build_time.cmake
    BYPRODUCTS ${source}
    COMMENT "Looking up the build time"
    VERBATIM)
  target_sources(${target} PRIVATE ${source})
  add_dependencies(${target} build_time)
endfunction()

# What makes a build with clang-tidy quick enough to be waited for: the headers of the standard library are parsed once,
# and no check walks through them.

set(llvm_include /usr/lib/llvm-14/include)
set(own_declarations ${PROJECT_BINARY_DIR}/own_declarations.so)
# clang-tidy loads it, so it has clang-tidy's own settings instead of this build's, whose sanitizers it must not have.
add_custom_command(
  OUTPUT ${own_declarations}
  COMMAND ${CMAKE_CXX_COMPILER} -std=c++17 -O1 -Wall -Wextra -fno-rtti -fPIC -shared -isystem ${llvm_include}
          ${CMAKE_CURRENT_LIST_DIR}/own_declarations.cpp -o ${own_declarations}
  DEPENDS ${CMAKE_CURRENT_LIST_DIR}/own_declarations.cpp
  VERBATIM)
add_custom_target(own_declarations DEPENDS ${own_declarations})

# precompile(NAME HEADER...): an empty library whose precompiled headers others use.
function(precompile name)
  file(CONFIGURE OUTPUT ${name}.cpp CONTENT "")
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

precompile(standard_headers ${CMAKE_CURRENT_LIST_DIR}/standard_headers.h)
find_package(GTest REQUIRED)
precompile(test_headers ${CMAKE_CURRENT_LIST_DIR}/standard_headers.h <gtest/gtest.h>)
target_link_libraries(test_headers PRIVATE GTest::gtest)

# compiled_targets(RESULT FOLDER): all below the folder that have sources of C++.
function(compiled_targets result folder)
  get_property(found DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  set(compiled)
  foreach(target ${found})
    get_target_property(sources ${target} SOURCES)
    if(sources MATCHES "\\.cpp")
      list(APPEND compiled ${target})
    endif()
  endforeach()
  get_property(subfolders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(subfolder ${subfolders})
    compiled_targets(below ${subfolder})
    list(APPEND compiled ${below})
  endforeach()
  set(${result} ${compiled} PARENT_SCOPE)
endfunction()

compiled_targets(targets ${PROJECT_SOURCE_DIR})
list(REMOVE_ITEM targets standard_headers test_headers)
foreach(target ${targets})
  get_target_property(libraries ${target} LINK_LIBRARIES)
  if(test_support IN_LIST libraries)
    target_precompile_headers(${target} REUSE_FROM test_headers)
  else()
    target_precompile_headers(${target} REUSE_FROM standard_headers)
  endif()
  add_dependencies(${target} own_declarations)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL EXECUTABLE)
    # Compiled as libraries are: code for programs alone could not use the headers precompiled for libraries.
    target_compile_options(${target} PRIVATE -fPIC)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_CLANG_TIDY "clang-tidy-14;--load=${own_declarations};--checks=own-declarations")
endforeach()

# Keeps the importer's classes as Java has them in memory, in a file beside the jar: Java starts sooner with it. It fits
# this jar at this place and the Java that made it; any other takes no notice of it. Used by the build as
#   cmake -D JAVA=PROGRAM -D JAR=FILE -D DEFINITION=FILE -P class_archive.cmake
# and by the installation, which includes it. DEFINITION is imported, and the classes that this needs are kept.
# A Java that cannot do this is no fault.
cmake_path(REPLACE_EXTENSION JAR LAST_ONLY jsa OUTPUT_VARIABLE class_archive)
set(making ${class_archive}.new)
file(REMOVE ${class_archive})
file(REMOVE_RECURSE ${making})
file(MAKE_DIRECTORY ${making})
file(COPY_FILE ${DEFINITION} ${making}/definition RESULT failure)
file(WRITE ${making}/options "BP_FILE\tdefinition\n")

# What the user has set for Java in general would become a part of the archive.
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env --unset=JDK_JAVA_OPTIONS --unset=JAVA_TOOL_OPTIONS --unset=_JAVA_OPTIONS
          LC_ALL=C.UTF-8 ${JAVA} -XX:ArchiveClassesAtExit=archive -XX:+UseSerialGC -cp ${JAR}
          KORV.bridges.MicrosoftSqlServerAs.Import.MicrosoftSqlServerAsImport options main.xml
  WORKING_DIRECTORY ${making}
  RESULT_VARIABLE exit_code
  OUTPUT_QUIET ERROR_QUIET)

# Java trusts the file: half of one would end the import. So it gets its name when it is whole.
if(failure EQUAL 0 AND exit_code STREQUAL "0" AND EXISTS ${making}/archive)
  file(RENAME ${making}/archive ${class_archive})
else()
  message(STATUS "No archive of the importer's classes: ${JAVA} makes none")
endif()
file(REMOVE_RECURSE ${making})

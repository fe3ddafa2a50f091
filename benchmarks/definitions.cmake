# The writers of made-up definitions: for the benchmarks, and for the test that keeps what they write.
include_guard(GLOBAL)

set(sources
  definition.cpp estate.cpp estate_cubes.cpp estate_dimensions.cpp estate_elements.cpp estate_script.cpp
  estate_view.cpp json_writer.cpp many.cpp plain.cpp tabular.cpp tabular_many.cpp xml_writer.cpp)
list(TRANSFORM sources PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
add_library(bench_definitions STATIC ${sources})

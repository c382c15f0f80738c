# The library tabulon: the layers in one, with the headers of api/, the enumerations and
# the exceptions as its face.
set(layers core groupfiles vocabulary model api tables)
list(TRANSFORM layers PREPEND tabulon_)

add_library(tabulon)
add_library(Tabulon::tabulon ALIAS tabulon)
get_target_property(public_headers tabulon_api HEADER_SET)
get_target_property(table_headers tabulon_tables HEADER_SET)
foreach(layer IN LISTS layers)
  target_sources(tabulon PRIVATE $<TARGET_OBJECTS:${layer}>)
endforeach()
target_sources(tabulon PUBLIC FILE_SET HEADERS
  BASE_DIRS "${PROJECT_SOURCE_DIR}"
  FILES ${public_headers} ${table_headers} "${PROJECT_SOURCE_DIR}/core/exceptions.h"
    "${PROJECT_SOURCE_DIR}/vocabulary/enumerations.h")
target_compile_features(tabulon PUBLIC cxx_std_20)
# Layers are no part of the export: only what is built here sees the sanitizers.
target_link_libraries(tabulon PUBLIC $<BUILD_INTERFACE:tabulon_sanitizers>)
set_target_properties(tabulon PROPERTIES
  LINKER_LANGUAGE CXX
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# tabulon_add_layer(NAME SOURCES file... HEADERS file... USES layer...)
#
# A folder of the library, as an object library that sees only the layers it names.
function(tabulon_add_layer name)
  cmake_parse_arguments(PARSE_ARGV 1 LAYER "" "" "SOURCES;HEADERS;USES")
  add_library(tabulon_${name} OBJECT ${LAYER_SOURCES})
  target_sources(tabulon_${name} PUBLIC FILE_SET HEADERS
    BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${LAYER_HEADERS})
  set_target_properties(tabulon_${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  if(TABULON_FUZZ_FEEDBACK)
    target_compile_options(tabulon_${name} PRIVATE -fsanitize-coverage=${TABULON_FUZZ_FEEDBACK})
  endif()
  target_link_libraries(tabulon_${name} PRIVATE tabulon_warnings tabulon_arithmetic
    PUBLIC tabulon_sanitizers)
  foreach(used IN LISTS LAYER_USES)
    target_link_libraries(tabulon_${name} PUBLIC tabulon_${used})
  endforeach()
endfunction()

# tabulon_add_test(NAME SOURCES file... USES layer...)
#
# The native tests of a layer, as one program `test_<NAME>` that ctest knows case by case. The objects
# of the layers below those named are linked too.
find_package(GTest QUIET)
if(NOT GTest_FOUND)
  # Debian has the sources too, for those who build for another system.
  set(INSTALL_GTEST OFF)
  set(BUILD_GMOCK OFF)
  set(CMAKE_WARN_DEPRECATED OFF)  # of its own files
  add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
endif()
include(GoogleTest)

# All layers that `layers` stand on, themselves included.
function(tabulon_close_layers result)
  set(pending ${ARGN})
  set(closed "")
  while(pending)
    list(POP_FRONT pending layer)
    if(NOT layer IN_LIST closed)
      list(APPEND closed ${layer})
      get_target_property(links tabulon_${layer} INTERFACE_LINK_LIBRARIES)
      list(FILTER links INCLUDE REGEX "^tabulon_")
      list(REMOVE_ITEM links tabulon_sanitizers tabulon_warnings)
      list(TRANSFORM links REPLACE "^tabulon_" "")
      list(APPEND pending ${links})
    endif()
  endwhile()
  set(${result} ${closed} PARENT_SCOPE)
endfunction()

function(tabulon_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 TEST "" "" "SOURCES;USES")
  tabulon_close_layers(layers ${TEST_USES})
  list(TRANSFORM layers PREPEND tabulon_)
  add_executable(test_${name} ${TEST_SOURCES})
  target_link_libraries(test_${name} PRIVATE
    ${layers} tabulon_warnings tabulon_sanitizers GTest::gtest GTest::gtest_main)
  # Typed tests are many and run once: what counts is the time of the compiler.
  target_compile_options(test_${name} PRIVATE $<$<CXX_COMPILER_ID:GNU,Clang>:-O1>)
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST PROPERTIES LABELS ${name})
endfunction()

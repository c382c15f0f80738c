# The fuzz targets, tests/fuzz/fuzz_<NAME>.cpp. Each is a program of the fuzzer (fuzz_<NAME>, with
# TABULON_BUILD_FUZZERS) and a test that replays known inputs (replay_<NAME>, with BUILD_TESTING).
set(TABULON_FUZZ_TARGETS header text_data run tokens numbers slices damaged_run tables)

# The arrays of scripts are made of Python objects; their slices need no more of it than its headers.
if(NOT Python_INCLUDE_DIRS)
  find_package(Python 3.10 QUIET COMPONENTS Interpreter Development.Module)
endif()
if(NOT Python_INCLUDE_DIRS)
  message(STATUS "No headers of Python: the fuzz target slices is left out")
  list(REMOVE_ITEM TABULON_FUZZ_TARGETS slices)
endif()

# The highest layer that a target reaches; it is linked with all below it. Tables stand beside the
# model.
set(TABULON_FUZZ_LAYER_header model)
set(TABULON_FUZZ_LAYER_text_data groupfiles)
set(TABULON_FUZZ_LAYER_run api)
set(TABULON_FUZZ_LAYER_tokens core)
set(TABULON_FUZZ_LAYER_numbers groupfiles)
set(TABULON_FUZZ_LAYER_slices core)
set(TABULON_FUZZ_LAYER_damaged_run api)
set(TABULON_FUZZ_LAYER_tables tables)

# tabulon_add_fuzz_program(PROGRAM NAME)
function(tabulon_add_fuzz_program program name)
  set(scratch scratch_disk.cpp)
  if(TABULON_MEMORY_FILES)
    set(scratch scratch_memory.cpp)
  endif()
  add_executable(${program}
    "${PROJECT_SOURCE_DIR}/tests/fuzz/fuzz_${name}.cpp" "${PROJECT_SOURCE_DIR}/tests/fuzz/${scratch}")
  target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${program} PRIVATE tabulon_warnings tabulon_sanitizers)
  set(highest ${TABULON_FUZZ_LAYER_${name}})
  foreach(layer IN ITEMS core groupfiles vocabulary tables model api)
    if(layer STREQUAL highest OR NOT layer STREQUAL tables)
      target_link_libraries(${program} PRIVATE tabulon_${layer})
    endif()
    if(layer STREQUAL highest)
      break()
    endif()
  endforeach()
  if(name STREQUAL slices)
    target_include_directories(${program} SYSTEM PRIVATE ${Python_INCLUDE_DIRS})
    if(TABULON_FUZZ_FEEDBACK)  # what is under test is a header
      target_compile_options(${program} PRIVATE -fsanitize-coverage=${TABULON_FUZZ_FEEDBACK})
    endif()
  endif()
endfunction()

# The programs of the fuzzer, which nothing but the target `fuzzers` builds.
function(tabulon_add_fuzzers)
  add_custom_target(fuzzers)
  foreach(target IN LISTS TABULON_FUZZ_TARGETS)
    tabulon_add_fuzz_program(fuzz_${target} ${target})
    target_link_options(fuzz_${target} PRIVATE -fsanitize=fuzzer)
    if(NOT TABULON_SANITIZE MATCHES address)  # which brings a limit of its own
      target_sources(fuzz_${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests/fuzz/allocation_limit.cpp")
    endif()
    set_target_properties(fuzz_${target} PROPERTIES EXCLUDE_FROM_ALL ON)
    add_dependencies(fuzzers fuzz_${target})
  endforeach()
endfunction()

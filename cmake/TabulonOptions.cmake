# Language level, warnings and sanitizers; the last two as INTERFACE targets that every layer uses.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# Hidden symbols keep the library out of the way of others in one interpreter. A shared library has
# to show its own: its users catch its exceptions by type.
if(BUILD_SHARED_LIBS)
  if(WIN32)
    message(FATAL_ERROR "On Windows the library is static only: its strings are exported as data.")
  endif()
else()
  set(CMAKE_CXX_VISIBILITY_PRESET hidden)
  set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
endif()

if(CMAKE_CXX_BYTE_ORDER STREQUAL "BIG_ENDIAN")
  message(FATAL_ERROR "Data files are little-endian: a big-endian host is not supported.")
endif()

# A product is rounded before something is added to it, also where the processor could do both in
# one operation: values are the same on every machine. (MSVC does so by itself.)
add_library(tabulon_arithmetic INTERFACE)
if(NOT MSVC)
  target_compile_options(tabulon_arithmetic INTERFACE -ffp-contract=off)
endif()

set(TABULON_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
set(TABULON_FUZZ_FEEDBACK "" CACHE STRING "What the layers tell the fuzzer, of -fsanitize-coverage")
option(TABULON_COVERAGE "Build with counters for gcov" OFF)
option(TABULON_WERROR "Treat warnings as errors" OFF)

add_library(tabulon_warnings INTERFACE)
if(MSVC)
  target_compile_options(tabulon_warnings INTERFACE /W4 $<$<BOOL:${TABULON_WERROR}>:/WX>)
else()
  target_compile_options(tabulon_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion
    $<$<BOOL:${TABULON_WERROR}>:-Werror>)
  # GCC 12 sees an overlap in each "text" + std::to_string(n) that it inlines; there is none.
  target_compile_options(tabulon_warnings INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
endif()

add_library(tabulon_sanitizers INTERFACE)
if(TABULON_SANITIZE)
  target_compile_options(tabulon_sanitizers INTERFACE -fsanitize=${TABULON_SANITIZE}
    -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_link_options(tabulon_sanitizers INTERFACE -fsanitize=${TABULON_SANITIZE})
endif()
if(TABULON_COVERAGE)
  target_compile_options(tabulon_sanitizers INTERFACE --coverage -O0 -g)
  target_link_options(tabulon_sanitizers INTERFACE --coverage)
endif()

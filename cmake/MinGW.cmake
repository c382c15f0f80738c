# Toolchain: builds for 64-bit Windows with Debian's mingw-w64, and runs the tests with wine if there
# is one.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# The programs run where no mingw-w64 is.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
find_program(TABULON_WINE NAMES wine64 wine /usr/lib/wine/wine64)
if(TABULON_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${TABULON_WINE}")
endif()

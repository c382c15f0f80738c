# The interpreter that the extension module is for: CPython 3.10 is the reference, a newer one serves
# too. One that is named (Python_EXECUTABLE) is the one that is used.
if(NOT DEFINED Python_EXECUTABLE)
  find_package(Python 3.10 EXACT QUIET COMPONENTS Interpreter Development.Module NumPy)
endif()
if(NOT Python_FOUND)
  find_package(Python 3.10 REQUIRED COMPONENTS Interpreter Development.Module NumPy)
endif()

# The package in the build tree, importable with PYTHONPATH=<build>/python: the extension module, and
# beside it a copy of python/tabulon with the proxy module that SWIG writes.
set(TABULON_PYTHON_DIR "${PROJECT_BINARY_DIR}/python")
set(TABULON_PROXY_DIR "${TABULON_PYTHON_DIR}/tabulon/api")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${TABULON_PYTHON_DIR}")

# The two smallest sample runs come with the package.
set(runs "${PROJECT_SOURCE_DIR}/examples/runs/")
set(only_power_curve
  FILES_MATCHING PATTERN "power_curve.*" PATTERN "faults" EXCLUDE PATTERN "idling" EXCLUDE)
file(COPY "${runs}" DESTINATION "${TABULON_PYTHON_DIR}/tabulon/_samples" ${only_power_curve})
file(COPY "${runs}idling/" DESTINATION "${TABULON_PYTHON_DIR}/tabulon/_samples")
install(DIRECTORY "${runs}" DESTINATION tabulon/_samples COMPONENT python EXCLUDE_FROM_ALL
  ${only_power_curve})
install(DIRECTORY "${runs}idling/" DESTINATION tabulon/_samples COMPONENT python EXCLUDE_FROM_ALL)

add_custom_target(tabulon_package ALL
  COMMAND ${CMAKE_COMMAND} -E copy_directory "${PROJECT_SOURCE_DIR}/python/tabulon"
    "${TABULON_PYTHON_DIR}/tabulon"
  COMMAND ${CMAKE_COMMAND} -E copy "${PROJECT_SOURCE_DIR}/python/_TabulonAPI_Python.pyi"
    "${TABULON_PYTHON_DIR}"
  COMMENT "Copying the Python package into the build tree"
  VERBATIM)

# What `cmake --install` lays down for C++ users. The headers include each other as "api/run.h";
# users may write that, or <tabulon/api/run.h>.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Tabulon")
install(TARGETS tabulon EXPORT TabulonTargets COMPONENT development
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/tabulon" COMPONENT development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" "${CMAKE_INSTALL_INCLUDEDIR}/tabulon")
install(EXPORT TabulonTargets NAMESPACE Tabulon:: DESTINATION "${package_dir}"
  COMPONENT development)

configure_package_config_file(cmake/TabulonConfig.cmake.in
  "${PROJECT_BINARY_DIR}/TabulonConfig.cmake" INSTALL_DESTINATION "${package_dir}")
# While the major version is 0, a new minor version may change the interface.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TabulonConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/TabulonConfig.cmake"
  "${PROJECT_BINARY_DIR}/TabulonConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT development)
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)

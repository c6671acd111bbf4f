# `cmake --install` puts the libraries, their headers and a CMake package under a prefix, for
# find_package(QDBGrid) and QDBGrid::Components in an application.
include(CMakePackageConfigHelpers)

set(QDB_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QDBGrid)

install(TARGETS qdbplatform qdbcomponents ${QDB_RESOURCE_TARGETS}
  EXPORT QDBGridTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  OBJECTS DESTINATION ${CMAKE_INSTALL_LIBDIR}/qdbgrid-objects)
# Headers include each other by their place under src/, so the tree keeps its shape.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qdbgrid
  FILES_MATCHING PATTERN "*.h" PATTERN "*Private.h" EXCLUDE)
install(EXPORT QDBGridTargets NAMESPACE QDBGrid:: DESTINATION ${QDB_PACKAGE_DIR})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QDBGridConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/QDBGridConfig.cmake
  INSTALL_DESTINATION ${QDB_PACKAGE_DIR})
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/QDBGridConfigVersion.cmake
  VERSION ${PROJECT_VERSION}
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/QDBGridConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/QDBGridConfigVersion.cmake
  DESTINATION ${QDB_PACKAGE_DIR})

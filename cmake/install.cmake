include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS ovui_core ovui EXPORT ovuiTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ovui)
install(DIRECTORY ${OVUI_SOURCE_DIR}/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ovui
  FILES_MATCHING PATTERN "*.h"
  PATTERN "*_internal.h" EXCLUDE)

set(OVUI_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ovui)
install(EXPORT ovuiTargets NAMESPACE ovui:: DESTINATION ${OVUI_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ovuiConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ovuiConfig.cmake INSTALL_DESTINATION ${OVUI_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ovuiConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ovuiConfig.cmake ${PROJECT_BINARY_DIR}/ovuiConfigVersion.cmake
  DESTINATION ${OVUI_CMAKE_DIR})

# Installation and the CMake package, so that a host writes
#   find_package(iModelStage REQUIRED)
#   target_link_libraries(app iModelStage::iModelStage)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(IMODELSTAGE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/iModelStage)

install(TARGETS iModelStage EXPORT iModelStageTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY iModelStage/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/iModelStage
  FILES_MATCHING PATTERN "*.h")
install(EXPORT iModelStageTargets NAMESPACE iModelStage:: DESTINATION ${IMODELSTAGE_CMAKE_DIR})

configure_package_config_file(cmake/iModelStageConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/iModelStageConfig.cmake
  INSTALL_DESTINATION ${IMODELSTAGE_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/iModelStageConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/iModelStageConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/iModelStageConfigVersion.cmake
  DESTINATION ${IMODELSTAGE_CMAKE_DIR})

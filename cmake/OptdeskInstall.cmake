# Installs the libraries and headers as the package optdesk (find_package(optdesk)).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
install(TARGETS optdesk_seam optdesk_toolkit optdesk_services ${OPTDESK_PANEL_TARGETS} optdesk_panels optdesk_mongo
  EXPORT optdeskTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS optdesk RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(dir seam toolkit services board order strategy positions)
  install(DIRECTORY ${CMAKE_SOURCE_DIR}/${dir}/ DESTINATION include/optdesk/${dir}
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT optdeskTargets NAMESPACE optdesk:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/optdesk)
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/optdeskConfig.cmake.in
  ${CMAKE_BINARY_DIR}/optdeskConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/optdesk)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/optdeskConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/optdeskConfig.cmake ${CMAKE_BINARY_DIR}/optdeskConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/optdesk)

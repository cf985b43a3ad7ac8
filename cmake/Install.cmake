# Headers keep their folders below include/kelvane; Kelvane.h stands beside it and includes them all.
include(CMakePackageConfigHelpers)

install(TARGETS kelvane EXPORT KelvaneTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS kelvane_host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY config DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane)
install(FILES Kelvane.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(folder records core formats reduction adjust job report map legend commands)
  if(NOT EXISTS ${PROJECT_SOURCE_DIR}/${folder}/CMakeLists.txt)
    continue()
  endif()
  install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvane
    FILES_MATCHING PATTERN "*.h" REGEX "/(detail|engine|linalg|plane|start|input|traverse|heights)$" EXCLUDE
    PATTERN "ListIndex.h" EXCLUDE)
endforeach()
foreach(layer coord utils mvz)
  install(DIRECTORY platform/${layer} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvane/platform
    FILES_MATCHING PATTERN "*.h" PATTERN "detail" EXCLUDE)
endforeach()
if(TARGET kvn_osgearth_standin)
  install(DIRECTORY platform/osgEarth/include DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvane/platform/osgEarth)
  set(KELVANE_USES_SYSTEM_OSGEARTH OFF)
else()
  set(KELVANE_USES_SYSTEM_OSGEARTH ON)
endif()

install(EXPORT KelvaneTargets NAMESPACE Kelvane:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Kelvane)
configure_package_config_file(cmake/KelvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/KelvaneConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Kelvane)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KelvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KelvaneConfig.cmake ${PROJECT_BINARY_DIR}/KelvaneConfigVersion.cmake
  cmake/KelvaneDependencies.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Kelvane)

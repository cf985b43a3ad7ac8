# Headers keep their folders below include/kelvane; Kelvane.h stands beside it and includes them all. Two components, for packages:
# the program with the library and its data, and what a host is built with.
include(CMakePackageConfigHelpers)
set(program COMPONENT Kelvane_Program)
set(development COMPONENT Kelvane_Development)

install(TARGETS kelvane EXPORT KelvaneTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ${program} NAMELINK_COMPONENT Kelvane_Development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${development})
install(TARGETS kelvane_host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ${program})
install(DIRECTORY config DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane ${program})
install(FILES Kelvane.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${development})
foreach(folder records core formats reduction adjust job report map legend commands)
  if(NOT EXISTS ${PROJECT_SOURCE_DIR}/${folder}/CMakeLists.txt)
    continue()
  endif()
  install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvane ${development}
    FILES_MATCHING PATTERN "*.h" REGEX "/(detail|engine|linalg|plane|start|input|traverse|heights)$" EXCLUDE
    PATTERN "ListIndex.h" EXCLUDE)
endforeach()
foreach(layer coord utils mvz)
  install(DIRECTORY platform/${layer} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvane/platform ${development}
    FILES_MATCHING PATTERN "*.h" PATTERN "detail" EXCLUDE)
endforeach()
if(TARGET kvn_osgearth_standin)
  install(DIRECTORY platform/osgEarth/include DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvane/platform/osgEarth ${development})
  set(KELVANE_USES_SYSTEM_OSGEARTH OFF)
else()
  set(KELVANE_USES_SYSTEM_OSGEARTH ON)
endif()

# --- for CMake ---
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Kelvane)
install(EXPORT KelvaneTargets NAMESPACE Kelvane:: DESTINATION ${package} ${development})
configure_package_config_file(cmake/KelvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/KelvaneConfig.cmake
  INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KelvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KelvaneConfig.cmake ${PROJECT_BINARY_DIR}/KelvaneConfigVersion.cmake
  cmake/KelvaneDependencies.cmake DESTINATION ${package} ${development})

# --- for pkg-config: found from where the file lies, so that the installed copy can be put elsewhere ---
list(JOIN KELVANE_OPENSCENEGRAPH_PARTS ", openscenegraph-" pc_requires)
set(pc_requires "Qt5Core >= 5.15, jsoncpp, tinyxml2, openscenegraph-osg, openscenegraph-${pc_requires}")
if(KELVANE_USES_SYSTEM_OSGEARTH)
  set(pc_libraries " -losgEarth")
else()
  set(pc_includes " -I\${includedir}/kelvane/platform/osgEarth/include")
endif()
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pc)
configure_file(cmake/kelvane.pc.in ${PROJECT_BINARY_DIR}/kelvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kelvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${development})

if(PROJECT_IS_TOP_LEVEL)
  include(cmake/Package.cmake)
endif()

# Headers keep their folders below include/kelvane; Kelvane.h and KelvaneCore.h stand beside it. Two components, for packages:
# the program with the library and its data, and what a host is built with.
include(CMakePackageConfigHelpers)
set(program COMPONENT Kelvane_Program)
set(development COMPONENT Kelvane_Development)

install(TARGETS kelvane EXPORT KelvaneTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ${program} NAMELINK_COMPONENT Kelvane_Development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${development})
install(TARGETS kelvane_host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ${program})
install(DIRECTORY config DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane ${program})
install(FILES Kelvane.h KelvaneCore.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${development})
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
set(kelvane_file ${CMAKE_SHARED_LIBRARY_PREFIX}kelvane${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION})
set(kelvane_soname ${CMAKE_SHARED_LIBRARY_PREFIX}kelvane${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
configure_package_config_file(cmake/KelvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/KelvaneConfig.cmake
  INSTALL_DESTINATION ${package} PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KelvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KelvaneConfig.cmake ${PROJECT_BINARY_DIR}/KelvaneConfigVersion.cmake
  cmake/KelvaneDependencies.cmake DESTINATION ${package} ${development})

# --- for pkg-config: found from where the file lies, so that the installed copy can be put elsewhere ---
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pc)
function(kelvane_pkgconfig name title requires)
  configure_file(cmake/kelvane.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${development})
endfunction()
set(requires "Qt5Core >= 5.15, jsoncpp, tinyxml2")
kelvane_pkgconfig(kelvane-core "Kelvane without its map" "${requires}")
if(KELVANE_USES_SYSTEM_OSGEARTH)
  set(pc_libraries " -losgEarth")
else()
  set(pc_includes " -I\${includedir}/kelvane/platform/osgEarth/include -DKELVANE_HAS_OSGEARTH_STANDIN")
endif()
list(JOIN KELVANE_OPENSCENEGRAPH_PARTS ", openscenegraph-" parts)
kelvane_pkgconfig(kelvane Kelvane "${requires}, openscenegraph-osg, openscenegraph-${parts}")

if(PROJECT_IS_TOP_LEVEL)
  include(cmake/Package.cmake)
endif()

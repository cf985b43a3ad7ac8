# What cpack makes: two packages for Debian, one of the program with its library and one of what hosts are built with.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelvane)
set(CPACK_PACKAGE_VENDOR "The Kelvane authors")
if(NOT KELVANE_PACKAGE_CONTACT)  # name and address of who hands the packages on
  set(KELVANE_PACKAGE_CONTACT "The Kelvane authors <packages@kelvane.invalid>")
endif()
set(CPACK_PACKAGE_CONTACT "${KELVANE_PACKAGE_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Kelvane_Program Kelvane_Development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(whole_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

# The loader is to know the library, and packages of programs that are linked to it depend on it.
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_KELVANE_PROGRAM_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_KELVANE_PROGRAM_PACKAGE_NAME kelvane)
set(CPACK_DEBIAN_KELVANE_PROGRAM_PACKAGE_SECTION science)
set(CPACK_DEBIAN_KELVANE_PROGRAM_PACKAGE_SHLIBDEPS ON)
# Pictures of the map look for these when they are drawn: off-screen OpenGL, and fonts for the names.
set(CPACK_DEBIAN_KELVANE_PROGRAM_PACKAGE_RECOMMENDS "libegl1, libgl1-mesa-dri, fonts-dejavu-core, fonts-wqy-microhei")
set(CPACK_COMPONENT_KELVANE_PROGRAM_DESCRIPTION "Reads field books of total stations, checks and reduces them, computes
traverses and trigonometric heights, and adjusts networks by least squares:
coordinates with their errors and error ellipses, and what is doubtful.

This package has the program kelvane and the library that it stands on.")

set(CPACK_DEBIAN_KELVANE_DEVELOPMENT_PACKAGE_NAME libkelvane-dev)
set(CPACK_DEBIAN_KELVANE_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(hosts_need "kelvane (= ${whole_version}), qtbase5-dev, libjsoncpp-dev, libtinyxml2-dev")
set(maps_need libopenscenegraph-dev)
if(KELVANE_USES_SYSTEM_OSGEARTH)
  string(APPEND maps_need ", libosgearth-dev")
endif()
set(CPACK_DEBIAN_KELVANE_DEVELOPMENT_PACKAGE_DEPENDS "${hosts_need}")
set(CPACK_DEBIAN_KELVANE_DEVELOPMENT_PACKAGE_RECOMMENDS "${maps_need}")
set(CPACK_COMPONENT_KELVANE_DEVELOPMENT_DESCRIPTION "Headers of the library that reads, checks and adjusts field data of total
stations, with its files for CMake and pkg-config.")

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianStage.cmake)
set(CPACK_KELVANE_SOURCE ${PROJECT_SOURCE_DIR})
set(CPACK_KELVANE_VERSION ${whole_version})
include(CPack)

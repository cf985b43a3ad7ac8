# The shared library libkelvane: one target, one list of sources and public headers a folder.
add_library(kelvane SHARED)
add_library(Kelvane::Kelvane ALIAS kelvane)

foreach(folder records core formats reduction adjust job report map legend commands)
  if(EXISTS ${PROJECT_SOURCE_DIR}/${folder}/CMakeLists.txt)
    add_subdirectory(${folder})
  endif()
endforeach()

set(layers $<TARGET_OBJECTS:kelvane_platform> $<TARGET_OBJECTS:kelvane_map_platform> $<TARGET_OBJECTS:kelvane_osg_platform>)
if(TARGET kvn_osgearth_standin)
  list(APPEND layers $<TARGET_OBJECTS:kvn_osgearth_standin>)
  target_include_directories(kelvane PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform/osgEarth/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kelvane/platform/osgEarth/include>)
  # For hosts, which may know another osgEarth: mvz/MapLibrary.h compares.
  target_compile_definitions(kelvane INTERFACE
    $<INSTALL_INTERFACE:KELVANE_HAS_OSGEARTH_STANDIN>
    $<$<NOT:$<BOOL:${PROJECT_IS_TOP_LEVEL}>>:$<BUILD_INTERFACE:KELVANE_HAS_OSGEARTH_STANDIN>>)
else()
  target_link_libraries(kelvane PUBLIC Kelvane::osgEarth)
endif()
target_sources(kelvane PRIVATE ${layers})
set(public_libraries Qt5::Core Kelvane::jsoncpp tinyxml2::tinyxml2 Kelvane::OpenSceneGraph)
target_link_libraries(kelvane
  PUBLIC ${public_libraries}
  PRIVATE $<BUILD_INTERFACE:kelvane_warnings> $<BUILD_INTERFACE:Eigen3::Eigen>
    $<BUILD_INTERFACE:METIS::METIS>)
target_include_directories(kelvane PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kelvane>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kelvane/platform>)
# The same library for hosts that include no header of the map: nothing of OpenSceneGraph stands on their include path.
add_library(kelvane_core INTERFACE)
add_library(Kelvane::Core ALIAS kelvane_core)
target_link_libraries(kelvane_core INTERFACE $<LINK_ONLY:kelvane> Qt5::Core Kelvane::jsoncpp tinyxml2::tinyxml2)
target_include_directories(kelvane_core INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/platform)
target_compile_features(kelvane_core INTERFACE cxx_std_17)
if(NOT PROJECT_IS_TOP_LEVEL)
  # Hosts may name a header as <kelvane/adjust/Matrix.h>, as with the installed ones.
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/include)
  file(CREATE_LINK ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/include/kelvane SYMBOLIC)
  target_include_directories(kelvane INTERFACE $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>)
  target_include_directories(kelvane_core INTERFACE ${PROJECT_BINARY_DIR}/include)
endif()
target_compile_definitions(kelvane PRIVATE KELVANE_BUILDING)
target_compile_features(kelvane PUBLIC cxx_std_17)
set_target_properties(kelvane PROPERTIES
  AUTOMOC ON
  EXPORT_NAME Kelvane
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# The headers without the library, for what is linked to either form of it.
add_library(kelvane_headers INTERFACE)
target_link_libraries(kelvane_headers INTERFACE ${public_libraries})
target_include_directories(kelvane_headers INTERFACE $<TARGET_PROPERTY:kelvane,INTERFACE_INCLUDE_DIRECTORIES>)

# The objects of the library, for tests and benchmarks of what it does not export. Never together with the library itself:
# a program that has both has two Systems, two registries of commands, two file callbacks.
add_library(kelvane_internal INTERFACE)
target_sources(kelvane_internal INTERFACE $<TARGET_OBJECTS:kelvane> ${layers})
target_link_libraries(kelvane_internal INTERFACE kelvane_headers METIS::METIS ${CMAKE_DL_LIBS})
if(NOT TARGET kvn_osgearth_standin)
  target_link_libraries(kelvane_headers INTERFACE Kelvane::osgEarth)
endif()

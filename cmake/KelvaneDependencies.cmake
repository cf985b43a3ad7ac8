# The libraries that Kelvane's headers and targets name, as targets of its own: Kelvane::jsoncpp, Kelvane::OpenSceneGraph, and
# Kelvane::osgEarth where that library is used in the place of the stand-in. The build and the installed package read this file,
# so that what is exported names them and no path of the machine that it was built on. Everything happens in functions: a host
# keeps its own variables, such as OPENSCENEGRAPH_LIBRARIES of its own components.

# jsoncpp by its files. Debian's package file of version 1.9.5 makes JsonCpp::JsonCpp without looking whether it is there, and
# whoever reads it a second time fails; so it is left to the host, before or behind us.
function(kelvane_find_jsoncpp)
  if(TARGET Kelvane::jsoncpp)
    return()
  endif()
  set(targets JsonCpp::JsonCpp jsoncpp_lib jsoncpp_static)
  kelvane_first_target(found ${targets})
  if(NOT found)
    find_path(KELVANE_JSONCPP_INCLUDE_DIR json/json.h PATH_SUFFIXES jsoncpp)
    find_library(KELVANE_JSONCPP_LIBRARY jsoncpp)
    mark_as_advanced(KELVANE_JSONCPP_INCLUDE_DIR KELVANE_JSONCPP_LIBRARY)
    if(KELVANE_JSONCPP_INCLUDE_DIR AND KELVANE_JSONCPP_LIBRARY)
      add_library(Kelvane::jsoncpp UNKNOWN IMPORTED)
      set_target_properties(Kelvane::jsoncpp PROPERTIES
        IMPORTED_LOCATION "${KELVANE_JSONCPP_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${KELVANE_JSONCPP_INCLUDE_DIR}")
      return()
    endif()
    find_package(jsoncpp CONFIG QUIET)  # in a folder that its package file alone knows
    kelvane_first_target(found ${targets})
  endif()
  if(found)
    add_library(Kelvane::jsoncpp INTERFACE IMPORTED)
    target_link_libraries(Kelvane::jsoncpp INTERFACE ${found})
  endif()
endfunction()

function(kelvane_first_target result)
  set(${result} "" PARENT_SCOPE)
  foreach(target ${ARGN})
    if(TARGET ${target})
      set(${result} ${target} PARENT_SCOPE)
      return()
    endif()
  endforeach()
endfunction()

# OpenSceneGraph comes with a find module that has variables and no target.
set(KELVANE_OPENSCENEGRAPH_PARTS osgDB osgText osgUtil osgViewer osgGA)
function(kelvane_find_openscenegraph)
  if(TARGET Kelvane::OpenSceneGraph)
    return()
  endif()
  find_package(OpenSceneGraph QUIET COMPONENTS ${KELVANE_OPENSCENEGRAPH_PARTS})
  if(OPENSCENEGRAPH_FOUND)
    add_library(Kelvane::OpenSceneGraph INTERFACE IMPORTED)
    target_include_directories(Kelvane::OpenSceneGraph INTERFACE ${OPENSCENEGRAPH_INCLUDE_DIRS})
    target_link_libraries(Kelvane::OpenSceneGraph INTERFACE ${OPENSCENEGRAPH_LIBRARIES})
  endif()
endfunction()

# Behind find_package(osgEarth). Up to version 3.6 the library's target has no namespace.
function(kelvane_use_osgearth)
  if(TARGET Kelvane::osgEarth)
    return()
  endif()
  kelvane_first_target(found osgEarth::osgEarth osgEarth)
  if(NOT found)
    message(FATAL_ERROR "The package of osgEarth that was found has no target osgEarth::osgEarth or osgEarth")
  endif()
  add_library(Kelvane::osgEarth INTERFACE IMPORTED GLOBAL)
  target_link_libraries(Kelvane::osgEarth INTERFACE ${found})
endfunction()

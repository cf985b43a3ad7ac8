# Hosts of other shapes: find_package in several orders, the sources inside, which is configured alone, and one without a map. After
# build.cmake, with the same arguments.
cmake_minimum_required(VERSION 3.25)

function(expect_done)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${said}")
  endif()
endfunction()
set(here ${CMAKE_CURRENT_LIST_DIR})

expect_done(${CMAKE_COMMAND} -S ${here}/orders -B ${WORK}/orders -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix)
expect_done(${CMAKE_COMMAND} --build ${WORK}/orders)
expect_done(${CMAKE_COMMAND} -S ${here}/inside -B ${WORK}/inside -G Ninja -DKELVANE_SOURCE=${SOURCE})

# An osgEarth of version 3.3 to 3.6, whose target has no namespace, in the place of the stand-in.
file(WRITE ${WORK}/osgEarth/osgEarthConfig.cmake "add_library(osgEarth INTERFACE IMPORTED GLOBAL)\n")
file(WRITE ${WORK}/osgEarth/osgEarthConfigVersion.cmake "set(PACKAGE_VERSION 3.4)\nset(PACKAGE_VERSION_COMPATIBLE TRUE)\n")
expect_done(${CMAKE_COMMAND} -S ${here}/inside -B ${WORK}/inside-osgearth -G Ninja -DKELVANE_SOURCE=${SOURCE}
  -DosgEarth_DIR=${WORK}/osgEarth)

# Its tests are the host's alone.
execute_process(COMMAND ${CMAKE_CTEST_COMMAND} -N WORKING_DIRECTORY ${WORK}/inside OUTPUT_VARIABLE said)
if(NOT said MATCHES "Total Tests: 1\n")
  message(FATAL_ERROR "the host has other tests than its own:\n${said}")
endif()

# Whatever a host allows itself, coordinates are computed as written.
file(READ ${WORK}/inside/build.ninja rules)
string(FIND "${rules}" "/adjust/PlaneAdjustment.cpp.o: " at)
string(SUBSTRING "${rules}" ${at} 2000 rule)
if(NOT rule MATCHES "FLAGS = [^\n]* -ffast-math [^\n]* -fno-fast-math")
  message(FATAL_ERROR "Kelvane is compiled with the fast arithmetic of its host:\n${rule}")
endif()

# A host without a map builds and runs without OpenSceneGraph's files and headers.
expect_done(${CMAKE_COMMAND} -S ${here}/core -B ${WORK}/core -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix)
expect_done(${CMAKE_COMMAND} --build ${WORK}/core)
expect_done(${WORK}/core/core ${SOURCE}/samples/net_charamza1990_p238.in2)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/core -- -t deps OUTPUT_VARIABLE headers)
file(READ ${WORK}/core/build.ninja rules)
if(NOT headers MATCHES "/job/Job.h" OR headers MATCHES "/(osg[A-Za-z]*|OpenThreads)/" OR rules MATCHES "libosg|osgEarth")
  message(FATAL_ERROR "a host without a map is built with OpenSceneGraph, or what it is built with is not known:\n${headers}")
endif()

# The exported targets name libraries and no files of the machine that built them, as far as they are not Kelvane's own.
file(GLOB files ${WORK}/prefix/lib*/cmake/Kelvane/*.cmake ${WORK}/prefix/lib/*/cmake/Kelvane/*.cmake)
foreach(file ${files})
  file(STRINGS ${file} paths REGEX "(^|[\"; ])/[a-z]|${BUILD}|${SOURCE}")
  list(FILTER paths EXCLUDE REGEX "^#")
  if(paths)
    message(FATAL_ERROR "${file} has absolute paths:\n${paths}")
  endif()
endforeach()
if(NOT files)
  message(FATAL_ERROR "no package files below ${WORK}/prefix")
endif()

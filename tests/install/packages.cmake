# Hosts of other shapes: find_package in several orders, and the sources inside, which is configured alone. After build.cmake, with
# the same arguments.
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

# Its tests are the host's alone.
execute_process(COMMAND ${CMAKE_CTEST_COMMAND} -N WORKING_DIRECTORY ${WORK}/inside OUTPUT_VARIABLE said)
if(NOT said MATCHES "Total Tests: 1\n")
  message(FATAL_ERROR "the host has other tests than its own:\n${said}")
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

# The programs that are built against the installed library run with a later version of it whose private implementations
# have grown: after build.cmake, with the same arguments.
cmake_minimum_required(VERSION 3.25)

set(later ${CMAKE_COMMAND} -E env LC_ALL=C.UTF-8 HOME=${WORK}/home LD_LIBRARY_PATH=${BUILD}/later/lib)
execute_process(COMMAND ${later} ldd ${WORK}/build/foreign COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE loaded)
if(NOT loaded MATCHES "${BUILD}/later/lib/libkelvane")
  message(FATAL_ERROR "not the later version is loaded:\n${loaded}")
endif()

# The data of the library are found from where it lies.
file(CREATE_LINK ${WORK}/prefix/share ${BUILD}/later/share SYMBOLIC)

function(expect text)
  execute_process(COMMAND ${later} ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0 OR NOT said MATCHES "${text}")
    message(FATAL_ERROR "${ARGN}\nended with ${result} or did not print \"${text}\":\n${said}")
  endif()
endfunction()
set(network ${SOURCE}/samples/net_charamza1990_p238.in2)
expect("" ${WORK}/build/foreign ${network})
expect("403 +1054612\\.5952 +644373\\.6085 .* holds 12 coordinates" ${WORK}/embedding/build/embedding ${network} ${WORK}/later.kvn)

# Builds the desktop example outside of the source tree and drives its window on a screen in memory. After build.cmake, with
# the same arguments.
cmake_minimum_required(VERSION 3.25)

find_program(SCREEN xvfb-run)
if(NOT SCREEN)
  message(FATAL_ERROR "xvfb-run is missing: cmake/install-packages test")
endif()

function(expect_done)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${said}")
  endif()
endfunction()

file(COPY ${SOURCE}/examples/desktop DESTINATION ${WORK})
expect_done(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/desktop -B ${WORK}/drive -G Ninja
  -DCMAKE_PREFIX_PATH=${WORK}/prefix -DEXAMPLE=${WORK}/desktop)
expect_done(${CMAKE_COMMAND} --build ${WORK}/drive)
# The picture of the window stays there, to be looked at.
set(home ${WORK}/desktop-home)
file(MAKE_DIRECTORY ${home})
expect_done(${CMAKE_COMMAND} -E env --unset=LANGUAGE --unset=XDG_CONFIG_HOME LC_ALL=C.UTF-8 HOME=${home} TMPDIR=${home}
  ${SCREEN} -a -s "-screen 0 1400x1000x24" ${WORK}/drive/drive ${SOURCE}/samples ${home}/window.png ${home})

# Each installed header compiles alone: after build.cmake, with the same arguments.
cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build --target headers
  RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${said}")
endif()

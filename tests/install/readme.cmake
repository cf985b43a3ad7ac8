# The first steps of the README: its program is built against the installed copy, with the lines of its CMakeLists.txt, runs
# on its network file, and prints what the README says. Included by check.cmake.

# Lines that are set in by four blanks, from one that begins with `first` to the next line of text, without the blanks.
function(readme_block first result)
  file(READ ${SOURCE}/README.md text)
  string(FIND "${text}" "\n    ${first}" begin)
  if(begin EQUAL -1)
    message(FATAL_ERROR "the README has no block that begins with ${first}")
  endif()
  string(SUBSTRING "${text}" ${begin} -1 text)
  string(REGEX MATCH "^(\n    [^\n]*|\n)+" block "${text}")
  string(REPLACE "\n    " "\n" block "${block}")
  string(STRIP "${block}" block)
  set(${result} "${block}\n" PARENT_SCOPE)
endfunction()

# What the program prints first, with some lines left out.
readme_block("$ kelvane adjust" shown)
string(REGEX REPLACE "^. kelvane adjust [^\n]*\n" "" shown "${shown}")
string(REGEX REPLACE "\n *[.][.][.]\n" "\n" shown "${shown}")
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=LANGUAGE --unset=XDG_CONFIG_HOME LC_ALL=C.UTF-8 HOME=${WORK}/home
    ${WORK}/prefix/bin/kelvane adjust samples/net_charamza1990_p238.in2
  WORKING_DIRECTORY ${SOURCE} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE printed)
string(REPLACE ";" "," printed "${printed}")
string(REPLACE ";" "," shown "${shown}")
string(REPLACE "\n" ";" shown "${shown}")
foreach(line ${shown})
  string(FIND "${printed}" "${line}\n" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the README shows a line that the program does not print, or not there:\n${line}\n${printed}")
  endif()
  string(SUBSTRING "${printed}" ${at} -1 printed)
endforeach()

readme_block("2,3,2" network)
readme_block("find_package(Kelvane" lines)
readme_block("// your_program.cpp" program)
readme_block("A 1000.0000" output)
string(REPLACE "// your_program.cpp" "" program "${program}")
string(REGEX REPLACE "// your_program.*" "" lines "${lines}")
set(first ${WORK}/first-steps)
file(WRITE ${first}/first.in2 "${network}")
file(WRITE ${first}/your_program.cpp "${program}")
file(WRITE ${first}/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\nproject(first LANGUAGES CXX)\n"
  "add_executable(your_program your_program.cpp)\n${lines}")
run(${CMAKE_COMMAND} -S ${first} -B ${first}/build -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${first}/build)
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=LANGUAGE --unset=XDG_CONFIG_HOME LC_ALL=C.UTF-8 HOME=${WORK}/home
    ${first}/build/your_program
  WORKING_DIRECTORY ${first} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE printed)
if(NOT printed STREQUAL output)
  message(FATAL_ERROR "the program of the README printed\n${printed}and not\n${output}")
endif()

# A program is built with what pkg-config says of the installed copy, and runs; the copy lies elsewhere than it was configured for.
# After build.cmake, with the same arguments and COMPILER.
cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE file ${WORK}/prefix/kelvane.pc)
cmake_path(GET file PARENT_PATH folder)
execute_process(COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE core
  COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${folder} pkg-config kelvane-core --print-errors --cflags --libs)
if(NOT core MATCHES "-lkelvane -lQt5Core" OR core MATCHES "osg")
  message(FATAL_ERROR "a host without a map gets ${core}")
endif()
set(source ${WORK}/pkgconfig.cpp)
file(WRITE ${source} "#include <kelvane/adjust/CommonFunction.h>\n#include <json/version.h>\n#include <osg/Version>\n"
  "#include <osgEarth/Version>\n#include <utils/Export.h>\n"
  "int main() { return kvn::CommonFunction::dmsToRad(90.0) > 1.5 ? 0 : 1; }\n")
# The line of the document, as a user types it.
file(STRINGS ${SOURCE}/docs/installing.md line REGEX "^    g\\+\\+ ")
string(REGEX REPLACE "^    g[+][+]" "${COMPILER}" line "${line}")
string(REPLACE "your_program.cpp" "pkgconfig.cpp -o pkgconfig" line "${line}")
execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${folder} sh -c "${line}"
  WORKING_DIRECTORY ${WORK} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${WORK}/pkgconfig COMMAND_ERROR_IS_FATAL ANY)

execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${folder} pkg-config kelvane --cflags
  OUTPUT_VARIABLE options COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(options UNIX_COMMAND "${options}")

# The headers of another osgEarth, found first, are not taken for those that the library was built with.
file(WRITE ${WORK}/other/osgEarth/Version "#define OSGEARTH_MAJOR_VERSION 3\n")
file(WRITE ${source} "#include <mvz/ViewerManager.h>\n")
foreach(first "" -I${WORK}/other)
  execute_process(COMMAND ${COMPILER} -std=c++17 -fPIC -fsyntax-only ${first} ${source} ${options}
    RESULT_VARIABLE result ERROR_VARIABLE said)
  if((first STREQUAL "") AND NOT result EQUAL 0 OR first AND NOT said MATCHES "error: [^\n]*its stand-in of osgEarth")
    message(FATAL_ERROR "with ${first}:\n${said}")
  endif()
endforeach()

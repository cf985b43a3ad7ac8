# A program is built with what pkg-config says of the installed copy, and runs; the copy lies elsewhere than it was configured for.
# After build.cmake, with the same arguments and COMPILER.
cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE file ${WORK}/prefix/kelvane.pc)
cmake_path(GET file PARENT_PATH folder)
set(configured ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${folder} pkg-config kelvane)
execute_process(COMMAND ${configured} --print-errors --cflags --libs OUTPUT_VARIABLE options COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${configured} --variable=libdir OUTPUT_VARIABLE libraries OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE core
  COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${folder} pkg-config kelvane-core --print-errors --cflags --libs)
if(NOT core MATCHES "-lkelvane -lQt5Core" OR core MATCHES "osg")
  message(FATAL_ERROR "a host without a map gets ${core}")
endif()
separate_arguments(options UNIX_COMMAND "${options}")
set(source ${WORK}/pkgconfig.cpp)
file(WRITE ${source} "#include <kelvane/adjust/CommonFunction.h>\n#include <json/version.h>\n#include <osg/Version>\n"
  "#include <osgEarth/Version>\n#include <utils/Export.h>\n"
  "int main() { return kvn::CommonFunction::dmsToRad(90.0) > 1.5 ? 0 : 1; }\n")
execute_process(COMMAND_ERROR_IS_FATAL ANY
  COMMAND ${COMPILER} -std=c++17 -fPIC ${source} -o ${WORK}/pkgconfig ${options} -Wl,-rpath,${libraries})
execute_process(COMMAND ${WORK}/pkgconfig COMMAND_ERROR_IS_FATAL ANY)

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

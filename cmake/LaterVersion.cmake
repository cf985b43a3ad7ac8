# The library as a later version could be, with one more member in each private implementation (utils/detail/PrivateData.h).
# Only the sources that see one are compiled again; the other objects are those of the library. For the test that a program
# built before runs with it (tests/install): the same file name and version, in a folder of its own.
function(kelvane_sees_private_data result source headers)
  file(READ ${source} text)
  set(${result} OFF PARENT_SCOPE)
  foreach(header KELVANE_LATER_MEMBER ${headers})
    string(FIND "${text}" "${header}" place)
    if(NOT place EQUAL -1)
      set(${result} ON PARENT_SCOPE)
    endif()
  endforeach()
endfunction()

set(folders adjust commands core formats job legend map platform records reduction)
set(headers)
set(later)
foreach(folder ${folders})
  file(GLOB_RECURSE candidates RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/${folder}/*Data.h ${PROJECT_SOURCE_DIR}/${folder}/*State.h)
  foreach(header ${candidates})
    kelvane_sees_private_data(sees ${PROJECT_SOURCE_DIR}/${header} "")
    if(sees AND NOT header MATCHES "/PrivateData.h$")
      list(APPEND headers "#include \"${header}\"")
    endif()
  endforeach()
endforeach()
# Headers that include one of these.
set(direct ${headers})
foreach(folder ${folders})
  file(GLOB_RECURSE candidates RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/${folder}/detail/*.h)
  foreach(header ${candidates})
    kelvane_sees_private_data(sees ${PROJECT_SOURCE_DIR}/${header} "${direct}")
    if(sees AND NOT header MATCHES "/PrivateData.h$")
      list(APPEND headers "#include \"${header}\"")
    endif()
  endforeach()
endforeach()
foreach(folder ${folders})
  file(GLOB_RECURSE candidates RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  foreach(source ${candidates})
    kelvane_sees_private_data(sees ${PROJECT_SOURCE_DIR}/${source} "${headers}")
    if(sees)
      list(APPEND later ${source})
    endif()
  endforeach()
endforeach()

# Several in one: they are few, and include much the same. Those with a rule of the same name are compiled alone.
list(TRANSFORM later PREPEND ${PROJECT_SOURCE_DIR}/)
add_library(kelvane_later_objects OBJECT ${later})
set_target_properties(kelvane_later_objects PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
set_source_files_properties(
  ${PROJECT_SOURCE_DIR}/adjust/engine/PlaneResults.cpp
  ${PROJECT_SOURCE_DIR}/adjust/traverse/ConnectTraverse.cpp
  ${PROJECT_SOURCE_DIR}/adjust/traverse/OpenTraverse.cpp
  PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
target_link_libraries(kelvane_later_objects PRIVATE kelvane_headers kelvane_warnings Eigen3::Eigen)
target_compile_definitions(kelvane_later_objects PRIVATE KELVANE_BUILDING KELVANE_LATER_VERSION)
target_compile_options(kelvane_later_objects PRIVATE -g0)

list(TRANSFORM later REPLACE "^.*/" "/")
list(JOIN later "|" names)
add_library(kelvane_later SHARED
  "$<FILTER:$<TARGET_OBJECTS:kelvane>,EXCLUDE,(${names})[.]o>" $<TARGET_OBJECTS:kelvane_later_objects>)
foreach(layer kelvane_platform kelvane_map_platform kelvane_osg_platform kvn_osgearth_standin)
  if(TARGET ${layer})
    target_sources(kelvane_later PRIVATE "$<FILTER:$<TARGET_OBJECTS:${layer}>,EXCLUDE,(${names})[.]o>")
  endif()
endforeach()
target_link_libraries(kelvane_later PRIVATE kelvane_headers METIS::METIS ${CMAKE_DL_LIBS})
set_target_properties(kelvane_later PROPERTIES
  LINKER_LANGUAGE CXX
  OUTPUT_NAME kelvane
  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/later/lib
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# Sources that a unity build (preset sanitize) compiles alone: a name in their unnamed namespace is one of a neighbour's
# too, or would hide it. Another source that does not compile beside its neighbours is named here as well.
function(kelvane_alone target)
  set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

set(alone_in_library
  adjust/AlgorithmData.cpp
  adjust/heights/TriangleHeightDataRead.cpp
  adjust/input/FaceMeans.cpp
  adjust/plane/GrossErrors.cpp
  adjust/start/BodySolver.cpp
  adjust/start/MeetingPlace.cpp
  adjust/traverse/ConnectTraverse.cpp
  adjust/traverse/OpenTraverse.cpp
  adjust/traverse/TraverseStations.cpp
  commands/ModifyNetworkDataCMD.cpp
  commands/ModifyTraverseDataCMD.cpp
  reduction/TraverseDataManage.cpp)

if(NOT CMAKE_UNITY_BUILD)
  return()
endif()
list(TRANSFORM alone_in_library PREPEND ${PROJECT_SOURCE_DIR}/)
kelvane_alone(kelvane ${alone_in_library})

# Installs the library into a folder of its own and builds the foreign project and the example against it:
# cmake -D BUILD=... -D SOURCE=... -D WORK=... -P build.cmake
cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} -S ${SOURCE}/tests/install -B ${WORK}/build -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/build --target foreign)

# The example that new users copy: outside the source tree.
file(COPY ${SOURCE}/examples/embedding DESTINATION ${WORK})
run(${CMAKE_COMMAND} -S ${WORK}/embedding -B ${WORK}/embedding/build -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/embedding/build)

# Installs the library into a folder of its own, builds the foreign project against it and runs that:
# cmake -D BUILD=... -D SOURCE=... -D WORK=... -P check.cmake
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} -S ${SOURCE}/tests/install -B ${WORK}/build -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${WORK}/build/foreign ${SOURCE}/samples/net_charamza1990_p238.in2)
run(${WORK}/prefix/bin/kelvane adjust ${SOURCE}/samples/net_charamza1990_p238.in2)

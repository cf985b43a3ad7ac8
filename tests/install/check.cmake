# What is built against the installed library runs, and the program too: after build.cmake, with the same arguments.
cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

run(${WORK}/build/foreign ${SOURCE}/samples/net_charamza1990_p238.in2)
run(${WORK}/prefix/bin/kelvane adjust ${SOURCE}/samples/net_charamza1990_p238.in2)

# Helpers of the library's own are not for hosts.
file(GLOB_RECURSE headers RELATIVE ${WORK}/prefix/include ${WORK}/prefix/include/*.h)
list(FILTER headers INCLUDE REGEX "/(detail|engine|linalg|plane|start|input|traverse|heights)/|/ListIndex\\.h$")
if(headers)
  message(FATAL_ERROR "installed, and for the library alone: ${headers}")
endif()

# What the build translates, the installed library translates too.
file(GLOB tables RELATIVE ${BUILD}/share ${BUILD}/share/kelvane/translations/*.qm)
foreach(table ${tables})
  run(${CMAKE_COMMAND} -E cat ${WORK}/prefix/share/${table})
endforeach()

# The example that new users copy, with a home of its own, and its output as its README has it.
set(samples ${SOURCE}/samples)

function(expect code text)
  execute_process(RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said
    COMMAND ${CMAKE_COMMAND} -E env --unset=LANGUAGE --unset=XDG_CONFIG_HOME LC_ALL=C.UTF-8 HOME=${WORK}/home ${ARGN})
  if(NOT result EQUAL code OR NOT said MATCHES ${text})
    message(FATAL_ERROR "${ARGN}\nended with ${result}, not ${code}, or did not print \"${text}\":\n${said}")
  endif()
endfunction()
set(embedding ${WORK}/embedding/build/embedding)

expect(0 "403 +1054612\\.5952 +644373\\.6085 +0\\.0000 +3\\.72 +4\\.26 +5\\.65.* holds 12 coordinates"
  ${embedding} ${samples}/net_charamza1990_p238.in2 ${WORK}/net.kvn)
expect(0 "Coordinates +12" ${WORK}/prefix/bin/kelvane show ${WORK}/net.kvn)

# A field book, the same as an instrument job, and one with slopes: 100 m at 3° from 50 m, 0.1 m between the heights of
# instrument and target, and 0.84 S²/2R = 0.7 mm of curvature and refraction give a height of 55.1343 m.
set(point2 "2 +215316\\.81.. +783040\\.90.. .* holds 8 coordinates")
expect(0 ${point2} ${embedding} ${samples}/trav_connecting_fr_5legs.txt ${WORK}/book.kvn)
run(${WORK}/prefix/bin/kelvane convert ${samples}/trav_connecting_fr_5legs.txt ${WORK}/job.lqf)
expect(0 ${point2} ${embedding} ${WORK}/job.lqf ${WORK}/job.kvn)
file(WRITE ${WORK}/slope.txt "STA,A,1.5,,1000,1000,50\nSC,B,1.6,,0.0000,90.0000,,0,0,0\nSC,P,1.6,,60.0000,87.0000,100,0,0,0\n"
  "SC,P,1.6,,240.0000,273.0000,100,0,0,0\nSC,B,1.6,,180.0000,270.0000,,0,0,0\nSTA,B,1.5,,1000,1100,50\n")
expect(0 "P +913\\.5161 +1049\\.9315 +55\\.1343 " ${embedding} ${WORK}/slope.txt ${WORK}/slope.kvn)

# What cannot be taken ends with one line that says why.
expect(1 "error: [^\n]*missing\\.in2: The data is error" ${embedding} ${WORK}/missing.in2 ${WORK}/x.kvn)
expect(1 "error: [^\n]*check\\.cmake: nothing to read" ${embedding} ${CMAKE_CURRENT_LIST_FILE} ${WORK}/x.kvn)
expect(1 "error: [^\n]*: Known points are not enough" ${embedding} ${samples}/trig_height_reciprocal.txt ${WORK}/x.kvn)

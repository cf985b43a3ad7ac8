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

# What is made of the help of the program lies where man and the shells look.
foreach(text man/man1/kelvane.1 bash-completion/completions/kelvane zsh/site-functions/_kelvane)
  file(SIZE ${WORK}/prefix/share/${text} size)
  if(size LESS 4000)
    message(FATAL_ERROR "share/${text} has ${size} bytes")
  endif()
endforeach()

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
  ${embedding} ${samples}/net_charamza1990_p238.in2 ${WORK}/net.kvn ${WORK}/net.html)
file(READ ${WORK}/net.html page)
if(NOT page MATCHES "The observations agree with their a-priori errors" OR NOT page MATCHES "</html>")
  message(FATAL_ERROR "the page of the example is not whole")
endif()
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

# Two set-ups of A, of which only the second one, with its circle turned by 10°, sees Q: 80 m at 30° behind B in the east.
file(WRITE ${WORK}/setups.lqf "JOB     J\nINST    T\n"
  "STA     A,1.5,\nXYZ     1000,1000,50\nBS      B,1.6,\nHVD     0.0,324000.0,\nSC      P,1.6,\nHVD     216000.0,324000.0,100.0\n"
  "STA     A,1.5,\nXYZ     1000,1000,50\nBS      B,1.6,\nHVD     36000.0,324000.0,\nSC      Q,1.6,\nHVD     144000.0,324000.0,80.0\n"
  "STA     B,1.5,\nXYZ     1100,1000,50\nBS      A,1.6,\nHVD     0.0,324000.0,\nSC      P,1.6,\nHVD     1080000.0,324000.0,100.0\n")
expect(0 "Q +960\\.0000 +1069\\.2820 .* holds 4 coordinates" ${embedding} ${WORK}/setups.lqf ${WORK}/setups.kvn)
expect(0 "Q +960\\.0000 +1069\\.2820 " ${WORK}/prefix/bin/kelvane adjust ${WORK}/setups.lqf)
# The a-priori errors in the head of a network file count: with the defaults P would lie at 1100.0020.
file(WRITE ${WORK}/first.in2 "20,3,2\nA,1000,1000\nB,1000,1200\nA\nB,L,0.0000\nP,L,315.0000\nP,S,141.42\n"
  "B\nP,L,0.0000\nP,S,141.43\nA,L,314.5958\n")
expect(0 "P +1100\\.0050 " ${embedding} ${WORK}/first.in2 ${WORK}/first.kvn)

# What cannot be taken ends with one line that says why.
expect(1 "error: [^\n]*missing\\.in2: no such file" ${embedding} ${WORK}/missing.in2 ${WORK}/x.kvn)
expect(1 "error: [^\n]*check\\.cmake: unknown kind of file" ${embedding} ${CMAKE_CURRENT_LIST_FILE} ${WORK}/x.kvn)
expect(1 "error: [^\n]*: Known points are not enough" ${embedding} ${samples}/trig_height_reciprocal.txt ${WORK}/x.kvn)

include(${CMAKE_CURRENT_LIST_DIR}/readme.cmake)

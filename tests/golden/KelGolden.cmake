# Golden tests: a program is run, and the transcript of what it did is compared with a file.
#
# A test is two files in one folder: NAME.run says how the program is run (see run.cmake), NAME.txt is
# the expected transcript. KELUTIL_UPDATE_GOLDEN=1 in the environment of ctest writes NAME.txt instead
# of comparing it; look at the difference before you commit it.
set(KELUTIL_GOLDEN_RUNNER ${CMAKE_CURRENT_LIST_DIR}/run.cmake)

# kel_golden_test(TEST PROGRAM GOLDEN [RUN]): adds a test of the target PROGRAM. GOLDEN is the path of NAME.txt,
# and RUN the path of the run file. Without RUN, the run file is NAME.run in the folder of GOLDEN.
function(kel_golden_test test program golden)
  cmake_path(REPLACE_EXTENSION golden LAST_ONLY run OUTPUT_VARIABLE run)
  if(ARGN)
    set(run ${ARGN})
  endif()
  cmake_path(ABSOLUTE_PATH golden NORMALIZE)
  cmake_path(ABSOLUTE_PATH run NORMALIZE)
  add_test(NAME ${test} COMMAND ${CMAKE_COMMAND} -DNAME=${program}
    "-DCOMMAND=${CMAKE_CROSSCOMPILING_EMULATOR};$<TARGET_FILE:${program}>"
    -DRUN=${run} -DGOLDEN=${golden} -DDIRECTORY=${CMAKE_CURRENT_BINARY_DIR}/golden/${test}
    -DCROSS=${CMAKE_CROSSCOMPILING} -DWINDOWS=${WIN32} -P ${KELUTIL_GOLDEN_RUNNER})
  set_tests_properties(${test} PROPERTIES SKIP_REGULAR_EXPRESSION "skipped: " TIMEOUT 120 LABELS ${program})
endfunction()

# kel_golden_tests(SUITE PROGRAM [FOLDER]): adds a test SUITE.NAME for each FOLDER/NAME.run.
function(kel_golden_tests suite program)
  file(GLOB runs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${ARGN}/*.run)
  foreach(run IN LISTS runs)
    cmake_path(GET run STEM LAST_ONLY name)
    cmake_path(REPLACE_EXTENSION run LAST_ONLY txt OUTPUT_VARIABLE golden)
    kel_golden_test(${suite}.${name} ${program} ${golden})
  endforeach()
endfunction()

# Run after a test program is linked: writes one ctest test for each of its suites.
#   cmake -D PROGRAM=... -D LEVEL=unit -D OUTPUT=... -P discover_suites.cmake
# A process for each single test would take twenty times as long: the sanitizers look for leaks
# whenever one ends.
execute_process(COMMAND ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE listed
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "(^|\n)[^ \n]+\\.[^\n]*" lines "${listed}")  # "  Test" lines begin with blanks
set(tests "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE "^\n?([^ ]+)\\..*" "\\1" suite "${line}")
  if(suite MATCHES "^Slow")
    set(label slow)
    set(seconds 7200)
  else()
    set(label ${LEVEL})
    set(seconds 600)
  endif()
  string(APPEND tests
      "add_test([==[${label}.${suite}]==] \"${PROGRAM}\" [==[--gtest_filter=${suite}.*]==])\n"
      "set_tests_properties([==[${label}.${suite}]==] PROPERTIES LABELS ${label} TIMEOUT ${seconds})\n")
endforeach()
file(WRITE ${OUTPUT} "${tests}")

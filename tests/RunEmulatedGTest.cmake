# Runs a GoogleTest program under the cross-compiling emulator and judges it by its XML report:
# the emulator may pass on only part of the exit code.
# The program may not understand the host's absolute paths, so the report goes to a name relative
# to the working folder.
get_filename_component(reportName "${REPORT}" NAME)
get_filename_component(reportFolder "${REPORT}" DIRECTORY)
file(REMOVE "${REPORT}")
execute_process(COMMAND ${EMULATOR} "${EXECUTABLE}" "--gtest_output=xml:${reportName}" RESULT_VARIABLE result
  WORKING_DIRECTORY "${reportFolder}")
if(NOT EXISTS "${REPORT}")
  message(FATAL_ERROR "no test report was written (exit code ${result})")
endif()
file(READ "${REPORT}" report)
string(REGEX MATCH "<testsuites tests=\"([0-9]+)\" failures=\"([0-9]+)\" disabled=\"[0-9]+\" errors=\"([0-9]+)\"" totals "${report}")
if(NOT totals)
  message(FATAL_ERROR "the test report has no totals")
endif()
set(tests ${CMAKE_MATCH_1})
set(failures ${CMAKE_MATCH_2})
set(errors ${CMAKE_MATCH_3})
message(STATUS "${tests} tests, ${failures} failures, ${errors} errors (exit code ${result})")
if(NOT failures EQUAL 0 OR NOT errors EQUAL 0 OR NOT result EQUAL 0 OR tests EQUAL 0)
  message(FATAL_ERROR "the emulated test suite failed")
endif()

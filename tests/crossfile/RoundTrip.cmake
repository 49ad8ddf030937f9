# The cross-file tool's write and read on one target.
file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
foreach(step write read)
  execute_process(COMMAND "${TOOL}" ${step} "${FOLDER}" RESULT_VARIABLE result OUTPUT_VARIABLE out)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${step} failed (${result}): ${out}")
  endif()
endforeach()

# Installs the built library into a fresh prefix, then configures, builds and runs a consumer that
# knows nothing of the source tree: only find_package(zo) and zo::zo.
file(REMOVE_RECURSE "${ZO_WORK_DIR}")
file(MAKE_DIRECTORY "${ZO_WORK_DIR}")
set(prefix "${ZO_WORK_DIR}/prefix")

function(run_step)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "step failed (${result}): ${ARGN}\n${out}\n${err}")
  endif()
  set(step_output "${out}" PARENT_SCOPE)
endfunction()

run_step(${CMAKE_COMMAND} --install "${ZO_BUILD_DIR}" --prefix "${prefix}")
# The interface is installed, the library's own machinery is not.
foreach(header base/ZoArray.h base/ZoStreamReadBinaryFile.h platform/CString.h)
  if(NOT EXISTS "${prefix}/include/zo/${header}")
    message(FATAL_ERROR "${header} was not installed")
  endif()
endforeach()
foreach(header base/ZoArchive.h base/ZoDiagnosticsClient.h)
  if(EXISTS "${prefix}/include/zo/${header}")
    message(FATAL_ERROR "${header} is internal but was installed")
  endif()
endforeach()

set(flags "")
if(ZO_SANITIZE)
  set(flags "-fsanitize=${ZO_SANITIZE}")
endif()
run_step(${CMAKE_COMMAND} -S "${ZO_CONSUMER_DIR}" -B "${ZO_WORK_DIR}/consumer" -G "${ZO_GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
run_step(${CMAKE_COMMAND} --build "${ZO_WORK_DIR}/consumer")
run_step("${ZO_WORK_DIR}/consumer/zo-consumer")
if(NOT step_output MATCHES "consumer ok")
  message(FATAL_ERROR "the consumer did not report success:\n${step_output}")
endif()

# Builds and runs the consumer project against ovui, either installed into a
# fresh prefix (MODE=find_package) or as a subdirectory (MODE=add_subdirectory).
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGV}\n${out}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
set(flags -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
          "-DCMAKE_CXX_FLAGS=${EXTRA_FLAGS}"
          "-DCMAKE_EXE_LINKER_FLAGS=${EXTRA_FLAGS}"
          "-DCMAKE_SHARED_LINKER_FLAGS=${EXTRA_FLAGS}")

if(MODE STREQUAL "find_package")
  set(prefix ${WORK_DIR}/prefix)
  run(${CMAKE_COMMAND} --install ${OVUI_BUILD_DIR} --prefix ${prefix})
  run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build ${flags}
      -DCMAKE_PREFIX_PATH=${prefix})
else()
  run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build ${flags}
      -DOVUI_SUBDIR=${OVUI_SOURCE_DIR})
endif()
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build -j 2)
run(${WORK_DIR}/build/consumer)
if(NOT last_output MATCHES "prop-changed:name=title")
  message(FATAL_ERROR "unexpected consumer output: ${last_output}")
endif()
message(STATUS "${MODE}: ${last_output}")

# Builds and runs the consumer project against ovui, either installed into a
# fresh prefix (MODE=find_package) or as a subdirectory (MODE=add_subdirectory).
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGV}\n${out}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

# expect_output(<program> <regex>): runs the program and matches its output.
function(expect_output program regex)
  run(${program})
  if(NOT last_output MATCHES "${regex}")
    message(FATAL_ERROR "unexpected output of ${program}: ${last_output}")
  endif()
  message(STATUS "${MODE}: ${last_output}")
endfunction()

# The core consumer must not load Qt, not even through ovui_core: ldd follows
# the whole chain of shared libraries.
function(expect_no_qt program)
  run(ldd ${program})
  if(last_output MATCHES "libQt5")
    message(FATAL_ERROR "${program} loads Qt:\n${last_output}")
  endif()
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
  # The core alone, found without Qt.
  run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build_core ${flags}
      -DCMAKE_PREFIX_PATH=${prefix} -DCORE_ONLY=ON)
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/build_core -j 2)
  expect_output(${WORK_DIR}/build_core/core_consumer "prop-changed:name=title")
  expect_no_qt(${WORK_DIR}/build_core/core_consumer)
else()
  run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build ${flags}
      -DOVUI_SUBDIR=${OVUI_SOURCE_DIR})
endif()
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build -j 2)
expect_output(${WORK_DIR}/build/core_consumer "prop-changed:name=title")
expect_no_qt(${WORK_DIR}/build/core_consumer)
expect_output(${WORK_DIR}/build/consumer "tr:Cancel confirm-handler:1")

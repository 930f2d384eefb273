# Installs the engine into a prefix of its own, builds the host against it and runs it there.
#
# Expects BUILD_DIR, HOST_DIR, WORK_DIR, GENERATOR, CXX_COMPILER and CXX_FLAGS.

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${result}")
  endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/prefix")
run("${CMAKE_COMMAND}" -S "${HOST_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix"
  "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
  "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/host" "${HOST_DIR}/" "${WORK_DIR}/shot.jpg")

file(READ "${WORK_DIR}/shot.jpg" start LIMIT 3 HEX)
if(NOT start STREQUAL "ffd8ff")
  message(FATAL_ERROR "shot.jpg is no JPEG file: ${start}")
endif()

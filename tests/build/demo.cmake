# scripts/demo.sh tells of a wrong model at once, before it installs or builds anything.
#
# Expects SOURCE_DIR and WORK_DIR.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK_DIR}")
file(COPY "${SOURCE_DIR}/scripts/demo.sh" DESTINATION "${WORK_DIR}/scripts")
# What would install, and tells that it was asked to.
file(WRITE "${WORK_DIR}/scripts/setup.sh" "#!/bin/sh\necho installing\nexit 3\n")
file(CHMOD "${WORK_DIR}/scripts/setup.sh" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
file(WRITE "${WORK_DIR}/there.obj" "v 0 0 0\n")

function(expect model code out errors)
  execute_process(COMMAND "${WORK_DIR}/scripts/demo.sh" "${model}" WORKING_DIRECTORY "${WORK_DIR}"
    RESULT_VARIABLE given_code OUTPUT_VARIABLE given_out ERROR_VARIABLE given_errors)
  if(NOT given_code STREQUAL code OR NOT given_out STREQUAL out OR NOT given_errors STREQUAL errors)
    message(FATAL_ERROR "${model}: ${given_code}, '${given_out}', '${given_errors}'")
  endif()
endfunction()

set(none "no file that can be read\n")
expect(none.obj 1 "" "scripts/demo.sh: ${WORK_DIR}/none.obj: ${none}")
expect("${WORK_DIR}" 1 "" "scripts/demo.sh: ${WORK_DIR}: ${none}")
expect(there.obj 3 "installing\n" "")

# The copier of the configuration and the book: brings the new, replaces its own, leaves the user's.

cmake_minimum_required(VERSION 3.21)

file(REMOVE_RECURSE ${WORK_DIR})
set(source ${WORK_DIR}/data/settings)
set(target ${WORK_DIR}/bin/settings)

function(run_copier said)
  execute_process(COMMAND ${CMAKE_COMMAND} -DSOURCES=${source} -DTARGET_DIR=${WORK_DIR}/bin
    -DRECORD_DIR=${WORK_DIR}/copied -P ${SCRIPT}
    RESULT_VARIABLE failed OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  set(${said} "${output}" PARENT_SCOPE)
endfunction()

function(expect text situation)
  file(READ ${target} found)
  if(NOT found STREQUAL text)
    message(SEND_ERROR "${situation}: found '${found}', expected '${text}'")
  endif()
endfunction()

file(WRITE ${source} "one")
run_copier(said)
expect("one" "first copy")

file(WRITE ${source} "two")
run_copier(said)
expect("two" "newer source, untouched copy")

file(WRITE ${target} "mine")
run_copier(said)
expect("mine" "changed by its user, no newer source")
if(NOT said STREQUAL "")
  message(SEND_ERROR "nothing is waiting, yet it said: ${said}")
endif()

file(WRITE ${source} "three")
run_copier(said)
expect("mine" "changed by its user, newer source")
if(NOT said MATCHES "settings was changed by hand and is left alone[^\n]*\n$")
  message(SEND_ERROR "a newer file is waiting, yet it said: '${said}'")
endif()

file(REMOVE ${target})
run_copier(said)
expect("three" "deleted by its user")

file(WRITE ${WORK_DIR}/bin/learned "keep")
file(WRITE ${source} "four")
run_copier(said)
expect("four" "newer source after a deletion")
if(NOT EXISTS ${WORK_DIR}/bin/learned)
  message(SEND_ERROR "another file of the folder is gone")
endif()

# A copy that was there before anything was recorded is the user's, unless it is the very same text.
file(REMOVE_RECURSE ${WORK_DIR}/copied)
file(WRITE ${target} "older")
run_copier(said)
expect("older" "no record of a copy")

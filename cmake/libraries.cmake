# Libraries that the engine does without. What needs one joins in when it is found; a line each says
# so.

# report_part(<name> <found> <what is missing>)
function(report_part name found missing)
  if(found)
    message(STATUS "${name}: on")
  elseif(TARVYLE_REQUIRE_ALL)
    message(FATAL_ERROR "${name}: ${missing} not found")
  else()
    message(STATUS "${name}: off (${missing} not found)")
  endif()
endfunction()

find_package(CLI11 CONFIG QUIET)
report_part("tarv" "${CLI11_FOUND}" "CLI11")

find_package(benchmark CONFIG QUIET)
report_part("benchmarks" "${benchmark_FOUND}" "Google Benchmark")

find_package(GTest QUIET)
report_part("unit tests" "${GTest_FOUND}" "GoogleTest")

# The system's packages belong to the system's Python, which another one may hide on the search
# path.
set(PYTEST_FOUND OFF)
foreach(python IN ITEMS python3 /usr/bin/python3)
  execute_process(COMMAND ${python} -c "import pytest, sys; print(sys.executable)"
    RESULT_VARIABLE failed
    OUTPUT_VARIABLE PYTEST_PYTHON OUTPUT_STRIP_TRAILING_WHITESPACE
    ERROR_QUIET)
  if(NOT failed)
    set(PYTEST_FOUND ON)
    break()
  endif()
endforeach()
report_part("program tests" "${PYTEST_FOUND}" "pytest")

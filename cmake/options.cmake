# How everything of the project is compiled: the interface library `project_options`.

add_library(project_options INTERFACE)

# The evaluation truncates sums of doubles, which must come out the same everywhere, so no operation
# may be fused or reordered: no contraction, and never fast-math.
target_compile_options(project_options INTERFACE
  -ffp-contract=off
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${TARVYLE_WERROR}>:-Werror>)

if(TARVYLE_CHECK_RECORD)
  target_compile_definitions(project_options INTERFACE TARVYLE_CHECK_RECORD=1)
endif()

if(TARVYLE_SANITIZE)
  target_compile_options(project_options INTERFACE
    -fsanitize=address $<$<NOT:$<BOOL:$<TARGET_PROPERTY:TEST_CODE>>>:-fsanitize=undefined>
    -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project_options INTERFACE -fsanitize=address,undefined)
endif()

if(TARVYLE_FUZZ)
  # What libFuzzer watches to tell whether an input leads to new code.
  target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(TARVYLE_SANITIZE OR TARVYLE_CHECK_RECORD)
  target_compile_definitions(project_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()

# A release ends at an access outside a container, an overrun buffer or a broken stack instead of
# going on with it, and nothing can be written over the addresses of library functions: 0.7 % more
# instructions for a search, counted as in docs/PERFORMANCE.md. The level of fortification stands
# with the build type's own flags, so that what is compiled without optimisation, where it does not
# work, can take it back.
string(APPEND CMAKE_CXX_FLAGS_RELEASE " -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
target_compile_definitions(project_options INTERFACE $<$<CONFIG:Release>:_GLIBCXX_ASSERTIONS>)
target_compile_options(project_options INTERFACE $<$<CONFIG:Release>:-fstack-protector-strong>)
target_link_options(project_options INTERFACE $<$<CONFIG:Release>:-Wl,-z,relro,-z,now>)

# Tables at fixed addresses are reached in one instruction less each time: 7 % of a search, counted
# likewise.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(project_options INTERFACE $<$<CONFIG:Release>:-fno-pie>)
  target_link_options(project_options INTERFACE $<$<CONFIG:Release>:-no-pie>)
endif()

include(CheckIPOSupported)
check_ipo_supported(RESULT ipo_works OUTPUT ipo_reason LANGUAGES CXX)
if(ipo_works)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The programs are small: one piece needs no `make` to spread the work and hides nothing from
    # the inliner.
    target_link_options(project_options INTERFACE $<$<CONFIG:Release>:-flto-partition=one>)
  endif()
else()
  message(STATUS "link-time optimisation: off (${ipo_reason})")
endif()

# A build after a profile of `tarv bench`, by GCC; packaging/train makes both steps, in one build
# folder because the objects' paths name the profiles.
set(TARVYLE_PROFILE "" CACHE STRING "record: a build that records a profile; use: one that uses it")
if(TARVYLE_PROFILE STREQUAL "record")
  target_compile_options(project_options INTERFACE -fprofile-generate -fprofile-update=single)
  target_link_options(project_options INTERFACE -fprofile-generate)
elseif(TARVYLE_PROFILE STREQUAL "use")
  if(NOT EXISTS ${CMAKE_BINARY_DIR}/trained)
    message(FATAL_ERROR "no profile in ${CMAKE_BINARY_DIR}; packaging/train makes one")
  endif()
  # What the training never ran has no profile; that is no fault.
  target_compile_options(project_options INTERFACE
    -fprofile-use -fprofile-partial-training -Wno-missing-profile)
  target_link_options(project_options INTERFACE -fprofile-use)
endif()

# Sets of squares are counted all the time; every x86-64 processor since 2009 does that in one
# instruction, and this names those. "" leaves the choice to the compiler, "native" builds for this
# machine.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  set(TARVYLE_ARCH "x86-64-v2" CACHE STRING "Processors to build for, as of -march")
else()
  set(TARVYLE_ARCH "" CACHE STRING "Processors to build for, as of -march")
endif()
if(TARVYLE_ARCH)
  target_compile_options(project_options INTERFACE -march=${TARVYLE_ARCH})
endif()

# compile_together(<target> <number>): up to that many files of the target are compiled as one, which
# takes half the time. For what need not be fast itself: tests, benchmarks, workbench. No two files
# of such a target give one name to different things. The debug preset compiles each by itself, as it
# is written: what linters look at, and proof that none lives off the includes of another.
# TARVYLE_TOGETHER=tests does so with the tests alone: for who changes one file of the engine after
# another, as tests/mutate.py does.
function(compile_together target number)
  set(together ${TARVYLE_TOGETHER})
  if(together STREQUAL "tests" AND target MATCHES "^tests?_")
    set(together ON)
  endif()
  set_target_properties(${target} PROPERTIES
    UNITY_BUILD ${together} UNITY_BUILD_BATCH_SIZE ${number})
endfunction()

# optimise_lightly(<target>): for what calls the engine and does little itself. What is built after a
# profile is to be fast, not fast to build.
function(optimise_lightly target)
  if(NOT TARVYLE_PROFILE)
    target_compile_options(${target} PRIVATE
      $<$<CONFIG:Release>:-O1> $<$<BOOL:${TARVYLE_SANITIZE}>:-O1>)
    set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE OFF)
  endif()
endfunction()

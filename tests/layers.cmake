# Asks the compiler, for each folder of the engine, which folders' headers can be included from
# there.

cmake_minimum_required(VERSION 3.21)

set(allowed_base base)
set(allowed_position position base)
set(allowed_eval eval position base)
set(allowed_book book position base)
set(allowed_pv pv position base)
set(allowed_search search eval book pv position base)
set(allowed_frontend frontend search eval book pv position base)
set(allowed_polyglot polyglot position base)
set(allowed_host host search eval book pv position base)
set(allowed_uci uci host frontend polyglot search eval book pv position base)
set(folders base position eval book pv search frontend host polyglot uci)

include(${REACH})
file(MAKE_DIRECTORY ${WORK_DIR})
set(wrong 0)
foreach(folder IN LISTS folders)
  set(probe "")
  foreach(other IN LISTS folders)
    file(GLOB headers RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/${other}/*.h)
    foreach(header IN LISTS headers)
      if(other IN_LIST allowed_${folder})
        set(wrong_if "!")
      else()
        set(wrong_if "")
      endif()
      string(APPEND probe "#if ${wrong_if}__has_include(\"${header}\")\n")
      string(APPEND probe "#error ${header}: ${wrong_if}reached\n#endif\n")
    endforeach()
  endforeach()
  file(WRITE ${WORK_DIR}/${folder}.cpp "${probe}")

  list(TRANSFORM reach_${folder} PREPEND -I)
  execute_process(
    COMMAND ${COMPILER} -std=c++20 -fsyntax-only ${reach_${folder}} ${WORK_DIR}/${folder}.cpp
    RESULT_VARIABLE failed ERROR_VARIABLE errors)
  if(failed)
    message("From ${folder}/:\n${errors}")
    math(EXPR wrong "${wrong} + 1")
  endif()

  # A path with ".." in it would walk around the include roots.
  file(GLOB sources ${SOURCE_DIR}/${folder}/*.h ${SOURCE_DIR}/${folder}/*.cpp)
  foreach(source IN LISTS sources)
    file(STRINGS ${source} around REGEX "^ *# *include.*\\.\\./")
    if(around)
      message("${source}: ${around}")
      math(EXPR wrong "${wrong} + 1")
    endif()
  endforeach()
endforeach()

if(wrong)
  message(FATAL_ERROR
    "includes must run one way: uci -> frontend, host -> search -> eval, book, pv -> position -> base")
endif()

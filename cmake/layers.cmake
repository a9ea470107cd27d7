# Includes run one way:
# tools -> uci -> frontend, host -> search -> eval, book, pv -> position -> base,
# and tools, uci -> polyglot -> position.
#
# Headers are included with their folder ("position/record.h"), so one include root for all would
# let any folder see any other. Each folder therefore gets a root of its own in the build tree that
# holds nothing but a link to that folder. A library publishes only this root; what a file can
# include is then exactly the set of folders that its library links, and an include against the
# direction is a header not found.

# include_root(<variable> <folder>): makes the root that holds only <folder> and stores its path.
function(include_root variable folder)
  set(root ${CMAKE_BINARY_DIR}/reach/${folder})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC)
  set(${variable} ${root} PARENT_SCOPE)
endfunction()

# engine_layer(<folder> [<folder it may include>...])
function(engine_layer folder)
  include_root(root ${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(engine_${folder} STATIC ${sources})
  target_include_directories(engine_${folder} PUBLIC ${root})
  target_link_libraries(engine_${folder} PRIVATE project_options)
  if(BUILD_TESTING AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The test programs are linked without link-time optimisation, which would optimise the engine
    # once for each of them: so the objects hold machine code as well.
    target_compile_options(engine_${folder} PRIVATE $<$<CONFIG:Release>:-ffat-lto-objects>)
  endif()
  if(TARVYLE_COVERAGE)
    target_compile_options(engine_${folder} PRIVATE --coverage)
    target_link_options(engine_${folder} PUBLIC --coverage)
  endif()
  foreach(below IN LISTS ARGN)
    target_link_libraries(engine_${folder} PUBLIC engine_${below})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY ENGINE_LAYERS ${folder})
endfunction()

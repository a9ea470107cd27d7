# Texts that stand in the program, each kept in a file of its own language, where an editor and a
# linter know it.
#
# The build writes a C++ file for each, and again when the text changes. The header that declares the
# constants stands in the tree, so that nothing needs a build to be read.

if(NOT CMAKE_SCRIPT_MODE_FILE)
  set(embed_script ${CMAKE_CURRENT_LIST_FILE})

  # embed_text(<target> <header> <namespace> <constant> <file>): the target defines the
  # std::string_view that the header declares; header and file as seen from the project's folder.
  function(embed_text target header namespace constant file)
    set(source ${CMAKE_BINARY_DIR}/embedded/${file}.cpp)
    add_custom_command(OUTPUT ${source}
      COMMAND ${CMAKE_COMMAND} -DHEADER=${header} -DNAMESPACE=${namespace} -DCONSTANT=${constant}
        -DFILE=${file} -DOUTPUT=${source} -P ${embed_script}
      WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
      DEPENDS ${CMAKE_SOURCE_DIR}/${file} ${embed_script}
      COMMENT "Embedding ${file}"
      VERBATIM)
    target_sources(${target} PRIVATE ${source})
  endfunction()

  return()
endif()

cmake_minimum_required(VERSION 3.21)

# A script looks for relative names in its working folder, the project's.
file(READ ${FILE} text)
string(FIND "${text}" ")text\"" end)
if(NOT end EQUAL -1)
  message(FATAL_ERROR "${FILE} holds )text\", which would end the literal that it becomes")
endif()
file(WRITE ${OUTPUT} "// Written by the build: the text of ${FILE}.

#include \"${HEADER}\"

namespace ${NAMESPACE} {

constexpr std::string_view ${CONSTANT} = R\"text(${text})text\";

}  // namespace ${NAMESPACE}
")

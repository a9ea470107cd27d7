# Run by CPack on the tree that becomes the package: adds what belongs to Debian alone, and
# compresses what Debian wants compressed. Nothing of it may depend on the day.

set(root ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
file(MAKE_DIRECTORY ${root}/doc/tarvyle)
file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright ${CMAKE_CURRENT_LIST_DIR}/changelog
  DESTINATION ${root}/doc/tarvyle)

file(GLOB manuals ${root}/man/man6/*.6)
execute_process(COMMAND gzip -9nf ${manuals} ${root}/doc/tarvyle/changelog
  COMMAND_ERROR_IS_FATAL ANY)

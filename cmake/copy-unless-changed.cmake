# Copies each of SOURCES (separated by commas) into TARGET_DIR, but never over a file that its user
# changed.
#
# RECORD_DIR holds the checksum of what was copied last. A file that still has that checksum is ours
# to replace; any other belongs to its user and is left alone, with one line when a newer one is
# waiting.

cmake_minimum_required(VERSION 3.21)

string(REPLACE "," ";" SOURCES "${SOURCES}")
foreach(source IN LISTS SOURCES)
  get_filename_component(name ${source} NAME)
  set(target ${TARGET_DIR}/${name})
  set(record ${RECORD_DIR}/${name}.sha256)

  file(SHA256 ${source} wanted)
  set(copied "")
  if(EXISTS ${record})
    file(READ ${record} copied)
  endif()

  if(EXISTS ${target})
    file(SHA256 ${target} present)
    if(NOT present STREQUAL wanted AND NOT present STREQUAL copied)
      if(NOT copied STREQUAL wanted)
        message(STATUS
          "${target} was changed by hand and is left alone (delete it to get the new one)")
      endif()
      continue()
    endif()
  else()
    set(present "")
  endif()

  if(NOT present STREQUAL wanted)
    file(MAKE_DIRECTORY ${TARGET_DIR})
    file(COPY_FILE ${source} ${target})
  endif()
  if(NOT copied STREQUAL wanted)
    file(MAKE_DIRECTORY ${RECORD_DIR})
    file(WRITE ${record} ${wanted})
  endif()
endforeach()

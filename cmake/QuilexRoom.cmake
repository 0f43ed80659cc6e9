# The house plan, enforced: a room is one static library. Its headers can be included by itself and by the targets that
# link it, and by nobody else, because each room's headers are reached through an include folder of their own in the
# build tree.
#
#   quilex_room(NAME FOLDER folder HEADERS header... [SOURCES source...] [USES room-or-library...])
#
# FOLDER is below src/; headers are included as "folder/Header.h".
function(quilex_room name)
  cmake_parse_arguments(PARSE_ARGV 1 ROOM "" "FOLDER" "HEADERS;SOURCES;USES")
  set(include_root "${CMAKE_BINARY_DIR}/include/${name}")
  file(MAKE_DIRECTORY "${include_root}/${ROOM_FOLDER}")
  foreach(header IN LISTS ROOM_HEADERS)
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/${ROOM_FOLDER}/${header}"
         "${include_root}/${ROOM_FOLDER}/${header}" SYMBOLIC)
  endforeach()
  if(ROOM_SOURCES)
    set(scope PUBLIC)
    list(TRANSFORM ROOM_SOURCES PREPEND "${PROJECT_SOURCE_DIR}/src/${ROOM_FOLDER}/")
    list(TRANSFORM ROOM_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/src/${ROOM_FOLDER}/")
    add_library(${name} STATIC ${ROOM_SOURCES} ${ROOM_HEADERS})
    target_link_libraries(${name} PRIVATE quilex_warnings)
  else()
    set(scope INTERFACE)
    add_library(${name} INTERFACE)
  endif()
  target_include_directories(${name} ${scope} "${include_root}")
  target_link_libraries(${name} ${scope} ${ROOM_USES})
endfunction()

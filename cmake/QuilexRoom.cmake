# The house plan, enforced: a folder is a room, and a room is one static library. Its headers can be included by itself
# and by the targets that link it, and by nobody else, because each room's headers are reached through an include folder
# of their own in the build tree.
#
#   quilex_room(HEADERS header... [SOURCES source...] [USES room-or-library...])
#
# stands in the room's own folder and names the target after it: src/linux/render is quilex_linux_render, and its headers
# are included as "linux/render/Header.h".
function(quilex_room)
  cmake_parse_arguments(PARSE_ARGV 0 ROOM "" "" "HEADERS;SOURCES;USES")
  file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}")
  string(REPLACE "/" "_" name "quilex_${folder}")
  set(include_root "${CMAKE_BINARY_DIR}/include/${name}")
  file(MAKE_DIRECTORY "${include_root}/${folder}")
  foreach(header IN LISTS ROOM_HEADERS)
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${header}" "${include_root}/${folder}/${header}" SYMBOLIC)
  endforeach()
  if(ROOM_SOURCES)
    set(scope PUBLIC)
    add_library(${name} STATIC ${ROOM_SOURCES} ${ROOM_HEADERS})
    target_link_libraries(${name} PRIVATE quilex_warnings)
  else()
    set(scope INTERFACE)
    add_library(${name} INTERFACE)
  endif()
  target_include_directories(${name} ${scope} "${include_root}")
  target_link_libraries(${name} ${scope} ${ROOM_USES})
endfunction()

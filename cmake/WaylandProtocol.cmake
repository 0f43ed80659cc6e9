# quilex_wayland_protocols(NAME file...): a C library of what wayland-scanner makes of protocol descriptions. The files
# are those of Debian's packages; the distribution decides their versions.
find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)
function(quilex_wayland_protocols name)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  file(MAKE_DIRECTORY "${folder}")
  set(sources)
  foreach(description IN LISTS ARGN)
    get_filename_component(protocol "${description}" NAME_WE)
    add_custom_command(
      OUTPUT "${folder}/${protocol}.h"
      COMMAND "${WAYLAND_SCANNER}" client-header "${description}" "${folder}/${protocol}.h"
      DEPENDS "${description}"
      VERBATIM)
    add_custom_command(
      OUTPUT "${folder}/${protocol}.c"
      COMMAND "${WAYLAND_SCANNER}" private-code "${description}" "${folder}/${protocol}.c"
      DEPENDS "${description}"
      VERBATIM)
    list(APPEND sources "${folder}/${protocol}.h" "${folder}/${protocol}.c")
  endforeach()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} SYSTEM PUBLIC "${folder}")
  target_link_libraries(${name} PUBLIC PkgConfig::WAYLAND)
endfunction()

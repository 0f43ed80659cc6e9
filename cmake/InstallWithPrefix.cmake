# Run while installing: installs a file that names the folder of the programs. Takes `template`, and `target` and
# `programs`, both below the prefix.
set(bin "${CMAKE_INSTALL_PREFIX}/${programs}")
set(quote "")
if(bin MATCHES "[\"`$%\\\\\n]")
  message(FATAL_ERROR "Desktop entries and units cannot name programs in ${bin}")
elseif(NOT bin MATCHES "^[A-Za-z0-9/._+-]+$")
  set(quote "\"")
endif()
message(STATUS "Installing: $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${target}")
configure_file("${template}" "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${target}" @ONLY)
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${CMAKE_INSTALL_PREFIX}/${target}")

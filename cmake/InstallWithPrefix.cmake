# Run while installing: installs a file that names the folder of the programs. Takes `template`; `configured`, where the
# finished file is made; `folder` and `programs`, both below the prefix.
set(bin "${CMAKE_INSTALL_PREFIX}/${programs}")
set(quote "")
if(bin MATCHES "[\"`$%\\\\\n]")
  message(FATAL_ERROR "Desktop entries and units cannot name programs in ${bin}")
elseif(NOT bin MATCHES "^[A-Za-z0-9/._+-]+$")
  set(quote "\"")
endif()
configure_file("${template}" "${configured}" @ONLY)
file(INSTALL "${configured}" DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}")

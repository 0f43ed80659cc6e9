# Hardening of the optimised builds: as much of it as the compiler, the linker and the processor have. A build without
# optimisation has no fortified functions, and the sanitizers look closer by themselves.
if(QUILEX_SANITIZERS OR NOT CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$")
  return()
endif()

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CheckPIESupported)

check_pie_supported(LANGUAGES C CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "QUILEX_HAS${flag}" has)
  check_cxx_compiler_flag("-Werror ${flag}" ${has})
  if(${has})
    add_compile_options(${flag})
  endif()
endforeach()

# Some compilers define a level of their own; glibc warns of one that it cannot keep.
foreach(level IN ITEMS 3 2)
  set(fortify -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level})
  string(JOIN " " CMAKE_REQUIRED_FLAGS -O2 -Werror ${fortify})
  check_cxx_source_compiles("#include <cstring>\nint main() { return 0; }" QUILEX_HAS_FORTIFY_${level})
  unset(CMAKE_REQUIRED_FLAGS)
  if(QUILEX_HAS_FORTIFY_${level})
    add_compile_options(${fortify})
    break()
  endif()
endforeach()

check_linker_flag(CXX "LINKER:-z,relro,-z,now" QUILEX_HAS_RELRO)
if(QUILEX_HAS_RELRO)
  add_link_options("LINKER:-z,relro,-z,now")
endif()

# Only these tools are known to have all of it, so that a test may ask for it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  set(QUILEX_HARDENED ON)
endif()

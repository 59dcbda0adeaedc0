# Helpers shared by every folder's CMakeLists.txt.
#
#   zv_warnings(<target>)
#     Turns on -Wall -Wextra for <target> only (PRIVATE), and -Werror when
#     ZV_WERROR is set, so that a dependency's headers never decide our flags.
#
#   zv_library(<name> SOURCES <files...>)
#     A static library for one folder, with the repository root as its
#     public include directory and our warnings.

function(zv_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(ZV_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

function(zv_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${ZV_ROOT})
  zv_warnings(${name})
endfunction()

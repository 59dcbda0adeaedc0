# Reruns one step of the GL table generator into OUT_DIR and fails unless
# what it writes is byte for byte what is checked in under glext/gen/.
#
#   cmake -DSTEP=generate|extract -DPYTHON=<python3> -DSOURCE_DIR=<repository>
#         -DOUT_DIR=<scratch dir> -P glext/gen/check_unchanged.cmake
#
# generate: make_glext.py from gl_facts.txt and the lists; it reads nothing
#   of the system, so it runs everywhere. No checked-in *.gen.* file may be
#   left that it no longer writes.
# extract: extract_gl_facts.py from the installed GL headers, only when
#   their GL_GLEXT_VERSION is the one gl_facts.txt records; otherwise it
#   prints "skipped: ..." (CTest's SKIP_REGULAR_EXPRESSION) and passes.
set(gen "${SOURCE_DIR}/glext/gen")
set(gl_h /usr/include/GL/gl.h)
set(glext_h /usr/include/GL/glext.h)
file(REMOVE_RECURSE "${OUT_DIR}")
file(MAKE_DIRECTORY "${OUT_DIR}")

if(STEP STREQUAL "extract")
  file(STRINGS "${gen}/gl_facts.txt" recorded REGEX "^glext-version ")
  string(REPLACE "glext-version " "" recorded "${recorded}")
  set(installed "none")
  if(EXISTS "${glext_h}" AND EXISTS "${gl_h}")
    file(STRINGS "${glext_h}" installed REGEX "^#define GL_GLEXT_VERSION ")
    string(REGEX REPLACE "^#define GL_GLEXT_VERSION +([0-9]+).*" "\\1" installed "${installed}")
  endif()
  if(NOT installed STREQUAL recorded)
    message("skipped: ${glext_h} is version ${installed}, gl_facts.txt records ${recorded}")
    return()
  endif()
  set(command glext/gen/extract_gl_facts.py --out "${OUT_DIR}/gl_facts.txt"
              --gl-h "${gl_h}" --glext-h "${glext_h}")
  set(written gl_facts.txt)
  set(target zv_glext_extract)
elseif(STEP STREQUAL "generate")
  set(command glext/gen/make_glext.py --out "${OUT_DIR}")
  file(GLOB checked_in RELATIVE "${gen}" "${gen}/*.gen.*")
  set(target zv_glext_regen)
else()
  message(FATAL_ERROR "STEP must be generate or extract, not '${STEP}'")
endif()

execute_process(
  COMMAND "${PYTHON}" ${command}
  WORKING_DIRECTORY "${SOURCE_DIR}"
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${command} failed")
endif()

if(STEP STREQUAL "generate")
  file(GLOB written RELATIVE "${OUT_DIR}" "${OUT_DIR}/*")
  list(SORT written)
  list(SORT checked_in)
  if(NOT written STREQUAL checked_in)
    message(FATAL_ERROR "the generator writes [${written}], glext/gen/ holds [${checked_in}]")
  endif()
endif()

find_program(DIFF diff)
set(differing "")
foreach(name IN LISTS written)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E compare_files "${gen}/${name}" "${OUT_DIR}/${name}"
    RESULT_VARIABLE same)
  if(NOT same EQUAL 0)
    list(APPEND differing "glext/gen/${name}")
    if(DIFF)
      execute_process(
        COMMAND "${DIFF}" -u "${gen}/${name}" "${OUT_DIR}/${name}"
        OUTPUT_VARIABLE patch)
      string(SUBSTRING "${patch}" 0 4000 patch)
      message("${patch}")
    endif()
  endif()
endforeach()
if(differing)
  message(FATAL_ERROR "out of date: ${differing}; build the target ${target}, "
                      "review the difference and commit it")
endif()

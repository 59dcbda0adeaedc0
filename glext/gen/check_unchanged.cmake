# Runs the generator into OUT_DIR and fails unless every file it writes is
# byte for byte the one checked in under glext/gen/, and no checked-in *.gen.*
# file is left that it no longer writes.
#
#   cmake -DPYTHON=<python3> -DSOURCE_DIR=<repository> -DOUT_DIR=<scratch dir>
#         -P glext/gen/check_unchanged.cmake
file(REMOVE_RECURSE "${OUT_DIR}")
execute_process(
  COMMAND "${PYTHON}" glext/gen/make_glext.py --out "${OUT_DIR}"
  WORKING_DIRECTORY "${SOURCE_DIR}"
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "glext/gen/make_glext.py failed")
endif()

file(GLOB written RELATIVE "${OUT_DIR}" "${OUT_DIR}/*")
file(GLOB checked_in RELATIVE "${SOURCE_DIR}/glext/gen" "${SOURCE_DIR}/glext/gen/*.gen.*")
list(SORT written)
list(SORT checked_in)
if(NOT written STREQUAL checked_in)
  message(FATAL_ERROR "the generator writes [${written}], glext/gen/ holds [${checked_in}]")
endif()

find_program(DIFF diff)
set(differing "")
foreach(name IN LISTS written)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E compare_files
      "${SOURCE_DIR}/glext/gen/${name}" "${OUT_DIR}/${name}"
    RESULT_VARIABLE same)
  if(NOT same EQUAL 0)
    list(APPEND differing "glext/gen/${name}")
    if(DIFF)
      execute_process(
        COMMAND "${DIFF}" -u "${SOURCE_DIR}/glext/gen/${name}" "${OUT_DIR}/${name}"
        OUTPUT_VARIABLE patch)
      string(SUBSTRING "${patch}" 0 4000 patch)
      message("${patch}")
    endif()
  endif()
endforeach()
if(differing)
  message(FATAL_ERROR "out of date: ${differing}; build the target zv_glext_regen, "
                      "review the difference and commit it")
endif()

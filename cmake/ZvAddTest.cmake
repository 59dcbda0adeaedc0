# zv_add_test(NAME <name> SOURCES <files...> [LIBS <targets...>] [DISPLAY]
#             [ENV <NAME=value...>])
#
#   One GoogleTest executable per subject, registered with CTest test by
#   test (gtest_discover_tests), so that a failure names the broken
#   behaviour. DISPLAY marks tests that need an X server: they get the
#   label "display", run one at a time, under the Xvfb that test.sh starts.
#   ENV sets environment variables for every test of the program.
#   A parameterised suite gives its cases readable names with a name
#   generator, the last argument of INSTANTIATE_TEST_SUITE_P.
#   Every test runs with the build directory as its working directory and
#   knows it as ZV_BUILD_DIR, and the repository as ZV_SOURCE_DIR.
include(GoogleTest)

function(zv_add_test)
  cmake_parse_arguments(ARG "DISPLAY" "NAME" "SOURCES;LIBS;ENV" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  zv_warnings(${ARG_NAME})
  target_link_libraries(${ARG_NAME} PRIVATE ${ARG_LIBS} GTest::gtest_main)
  target_compile_definitions(${ARG_NAME} PRIVATE
    ZV_BUILD_DIR="${CMAKE_BINARY_DIR}"
    ZV_SOURCE_DIR="${ZV_ROOT}")
  # Tests on the display run one at a time: they share the X server and
  # its keyboard focus.
  set(properties LABELS unit)
  if(ARG_DISPLAY)
    set(properties LABELS display RESOURCE_LOCK xserver)
  endif()
  if(ARG_ENV)
    list(APPEND properties ENVIRONMENT "${ARG_ENV}")
  endif()
  # A parameterised suite names its cases with a name generator
  # ("Tiling.CutsTheGrid/Picture600x300"); CTest's name then leaves out the
  # printed parameter, which for a struct is its bytes, pointers included.
  gtest_discover_tests(${ARG_NAME}
    NO_PRETTY_VALUES
    WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
    DISCOVERY_TIMEOUT 30
    PROPERTIES ${properties} TIMEOUT 120)
endfunction()

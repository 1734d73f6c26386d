# Helpers for tests and fuzz targets.

if(DIAGS_TESTS)
  enable_testing()
  include(GoogleTest)
endif()

# diags_add_test(NAME <target> SOURCES <file>... [LIBS <library>...] [DEFINES <definition>...]
#                [INSTALLATION] [TIMEOUT <seconds>])
#
# Makes a GoogleTest program and registers each of its cases with CTest. With INSTALLATION, the
# staged installation and the command are built before it, and the sources see their paths as
# DIAGS_INSTALLATION_DIR and DIAGS_COMMAND. DIAGS_SOURCE_DIR is the root of the source tree. What the
# tests cache stays in the build.
function(diags_add_test)
  cmake_parse_arguments(PARSE_ARGV 0 test "INSTALLATION" "NAME;TIMEOUT" "SOURCES;LIBS;DEFINES")
  if(NOT test_TIMEOUT)
    set(test_TIMEOUT 120)
  endif()
  add_executable(${test_NAME} ${test_SOURCES})
  set_target_properties(${test_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                                                "${DIAGS_TEST_OUTPUT_DIRECTORY}")
  target_compile_definitions(${test_NAME} PRIVATE DIAGS_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                                  ${test_DEFINES})
  target_link_libraries(${test_NAME} PRIVATE framework ${test_LIBS} GTest::gtest_main
                                             GTest::gmock diags_warnings)
  if(NOT MSVC)
    # The tests run for microseconds; compiling them is what takes time.
    target_compile_options(${test_NAME} PRIVATE -O0)
  endif()
  if(test_INSTALLATION)
    add_dependencies(${test_NAME} installation diags)
    target_compile_definitions(
      ${test_NAME} PRIVATE DIAGS_INSTALLATION_DIR="${DIAGS_INSTALLATION_DIR}"
                           DIAGS_COMMAND="$<TARGET_FILE:diags>")
  endif()
  # At test time: a sanitizer's program need not be able to run where it is built.
  gtest_discover_tests(${test_NAME} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT ${test_TIMEOUT}
                                  ENVIRONMENT "XDG_CACHE_HOME=${PROJECT_BINARY_DIR}/test-cache")
endfunction()

# diags_add_fuzzer(NAME <target> SOURCES <file>... [LIBS <library>...])
#
# Makes a libFuzzer program in build/fuzz-bin; its seed corpus is fuzz/corpus/<target>, its dictionary,
# if it has one, fuzz/<target>.dict.
function(diags_add_fuzzer)
  cmake_parse_arguments(PARSE_ARGV 0 fuzzer "" "NAME" "SOURCES;LIBS")
  add_executable(${fuzzer_NAME} ${fuzzer_SOURCES})
  set_target_properties(${fuzzer_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                                                  "${PROJECT_BINARY_DIR}/fuzz-bin$<0:>")
  target_link_options(${fuzzer_NAME} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${fuzzer_NAME} PRIVATE framework ${fuzzer_LIBS} diags_warnings)
endfunction()

# Helpers for tests and fuzz targets.

if(DIAGS_TESTS)
  enable_testing()
  include(GoogleTest)
endif()

# diags_excluded_cases(<variable>)
#
# Puts a GoogleTest filter into the variable that leaves out what tests/exclusions.txt says cannot run
# on this platform. Its lines: platform, name of the case, reason.
function(diags_excluded_cases variable)
  set(list "${PROJECT_SOURCE_DIR}/tests/exclusions.txt")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list}")
  string(TOLOWER "${CMAKE_SYSTEM_NAME}" platform)
  file(STRINGS "${list}" lines REGEX "^${platform} ")
  set(filter "")
  foreach(line IN LISTS lines)
    string(REGEX MATCH "^[a-z]+ +([^ ]+)" ignored "${line}")
    string(APPEND filter ":${CMAKE_MATCH_1}")
  endforeach()
  string(REGEX REPLACE "^:" "-" filter "${filter}")
  set(${variable} "${filter}" PARENT_SCOPE)
endfunction()

# diags_register_test(<target> <timeout in seconds>): what diags_add_test tells CTest.
function(diags_register_test target timeout)
  diags_excluded_cases(filter)
  set(environment "XDG_CACHE_HOME=${PROJECT_BINARY_DIR}/test-cache")
  if(CMAKE_CROSSCOMPILING_EMULATOR OR DIAGS_SANITIZE)
    # Starting a program takes long there, so that one start runs all its cases. The names are more
    # than a command line may be long on Windows.
    math(EXPR timeout "10 * ${timeout}")
    set(flags "${PROJECT_BINARY_DIR}/excluded.flags")
    file(CONFIGURE OUTPUT "${flags}" CONTENT "--gtest_filter=${filter}\n")
    add_test(NAME ${target} COMMAND ${target} --gtest_brief=1 "--gtest_flagfile=${flags}")
    set_tests_properties(${target} PROPERTIES TIMEOUT ${timeout} ENVIRONMENT "${environment}")
  else()
    # At test time: a sanitizer's program need not be able to run where it is built.
    gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                         TEST_FILTER "${filter}"
                         PROPERTIES TIMEOUT ${timeout} ENVIRONMENT "${environment}")
  endif()
  set_property(GLOBAL APPEND PROPERTY DIAGS_TEST_PROGRAMS $<TARGET_FILE:${target}>)
endfunction()

# diags_compile_as_test(<target>): quickly. The tests run for microseconds; compiling them is what takes
# time, and of that a third is GoogleMock's header, which is read once where that was asked for.
function(diags_compile_as_test target)
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -O0)
  endif()
  if(DIAGS_UNITY AND NOT TARGET test_headers)
    add_executable(test_headers EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/tests/support/AlreadyRead.cpp")
    target_compile_options(test_headers PRIVATE -O0)
    target_link_libraries(test_headers PRIVATE GTest::gmock diags_warnings)
    target_precompile_headers(test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h> <algorithm> <chrono>
                              <filesystem> <fstream> <functional> <map> <optional> <set> <sstream> <string>
                              <thread> <variant> <vector>)
  endif()
  if(DIAGS_UNITY)
    target_precompile_headers(${target} REUSE_FROM test_headers)
  endif()
endfunction()

# diags_add_test(NAME <target> SOURCES <file>... [LIBS <library>...] [DEFINES <definition>...]
#                [INSTALLATION] [ONE_THREAD] [TIMEOUT <seconds>])
#
# Makes a GoogleTest program and registers its cases with CTest. With INSTALLATION, the
# staged installation and the command are built before it, and the sources see their paths as
# DIAGS_INSTALLATION_DIR and DIAGS_COMMAND. DIAGS_SOURCE_DIR is the root of the source tree. What the
# tests cache stays in the build. With ONE_THREAD, what is tested has no thread and shares nothing with
# one: the thread sanitizer, with which it would take longest of all, could find nothing, and its build
# leaves it out.
function(diags_add_test)
  cmake_parse_arguments(PARSE_ARGV 0 test "INSTALLATION;ONE_THREAD" "NAME;TIMEOUT" "SOURCES;LIBS;DEFINES")
  if(test_ONE_THREAD AND DIAGS_SANITIZE STREQUAL "thread")
    return()
  endif()
  if(NOT test_TIMEOUT)
    set(test_TIMEOUT 120)
  endif()
  add_executable(${test_NAME} ${test_SOURCES})
  diags_unite(${test_NAME})
  set_target_properties(${test_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                                                "${DIAGS_TEST_OUTPUT_DIRECTORY}")
  target_compile_definitions(${test_NAME} PRIVATE DIAGS_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                                  ${test_DEFINES})
  target_link_libraries(${test_NAME} PRIVATE framework ${test_LIBS} GTest::gtest_main
                                             GTest::gmock diags_warnings)
  diags_compile_as_test(${test_NAME})
  if(test_INSTALLATION)
    add_dependencies(${test_NAME} installation diags)
    target_compile_definitions(
      ${test_NAME} PRIVATE DIAGS_INSTALLATION_DIR="${DIAGS_INSTALLATION_DIR}"
                           DIAGS_COMMAND="$<TARGET_FILE:diags>")
  endif()
  diags_register_test(${test_NAME} ${test_TIMEOUT})
endfunction()

# diags_add_check(NAME <name> COMMAND <program> <argument>...)
#
# Registers a command with CTest as a test. What it caches stays in the build. Those that one platform alone has are in
# tests/exclusions.txt, too, by their name without what follows a "/".
function(diags_add_check)
  add_test(${ARGN})
  cmake_parse_arguments(PARSE_ARGV 0 check "" "NAME" "COMMAND")
  set_tests_properties("${check_NAME}" PROPERTIES ENVIRONMENT
                                                  "XDG_CACHE_HOME=${PROJECT_BINARY_DIR}/test-cache")
  string(REGEX REPLACE "/.*" "" name "${check_NAME}")
  set_property(GLOBAL APPEND PROPERTY DIAGS_TEST_CHECKS "${name}")
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

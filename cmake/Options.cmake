# What can be chosen at configuration, and what holds for every target.

option(DIAGS_TESTS "Build the tests" ON)
option(DIAGS_BENCH "Build the benchmarks" OFF)
option(DIAGS_LAB "Build the programs that the lab of faulty machines needs (Linux)" OFF)
option(DIAGS_FUZZ "Build the fuzz targets and instrument everything for them (clang)" OFF)
option(DIAGS_COVERAGE "Record which branches run (gcc)" OFF)
option(DIAGS_UNITY "Compile several sources of a target at once, and the tests' headers once: quicker where there is no compiler cache" OFF)
option(DIAGS_DEBUG_PACKAGE "Write debug information, and make a package of it beside the Debian one" OFF)
set(DIAGS_SANITIZE "" CACHE STRING "Sanitizers: \"address,undefined\", \"thread\" or none")

get_property(diags_multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT diags_multi_config AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Programs in bin, libraries in lib; a DLL has to lie beside the program that loads it. `$<0:>` keeps
# multi-configuration generators from adding a folder of their own.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin$<0:>")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib$<0:>")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib$<0:>")
if(WIN32)
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
  set(CMAKE_SHARED_MODULE_PREFIX "")
  set(DIAGS_TEST_OUTPUT_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
else()
  set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
  set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../lib")
  set(DIAGS_TEST_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/test-bin$<0:>")
endif()

if(DIAGS_DEBUG_PACKAGE)
  # Without the name of the folder that it happened to be built in.
  add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:-g;-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
endif()

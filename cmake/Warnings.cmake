# `diags_warnings`: link it privately to whatever is compiled from our own sources.

add_library(diags_warnings INTERFACE)
if(MSVC)
  target_compile_options(diags_warnings INTERFACE /W4 /WX /permissive- /utf-8)
  target_compile_definitions(diags_warnings INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(
    diags_warnings
    INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
              $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> -Werror)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # gcc 12 sees overlaps in concatenations of std::string that are not there.
  target_compile_options(diags_warnings INTERFACE -Wno-restrict)
  if(DIAGS_SANITIZE OR DIAGS_COVERAGE)
    # Instrumented code hides from gcc that a variable has been set.
    target_compile_options(diags_warnings INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()

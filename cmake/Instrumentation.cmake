# Sanitizers, coverage and fuzzing change every object file, so they are set for all targets.

if(DIAGS_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "DIAGS_FUZZ needs clang: configure with -DCMAKE_CXX_COMPILER=clang++")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
  if(NOT DIAGS_SANITIZE)
    set(DIAGS_SANITIZE "address,undefined")
  endif()
endif()

if(DIAGS_SANITIZE)
  add_compile_options(-fsanitize=${DIAGS_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -g1 -O1)
  add_link_options(-fsanitize=${DIAGS_SANITIZE})
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

if(DIAGS_COVERAGE)
  add_compile_options(--coverage -O0 -g -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

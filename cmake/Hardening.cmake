# What makes a mistake in the code hard to turn into an attack. Data files, schemas and providers come
# from others, and the command is run by root. tests/build/hardening.sh reads all of it off the files.
#
# It holds for the folders that are added from here on, until diags_stop_hardening(): for what is shipped.
# So does the debug information, which is shipped beside it.
get_directory_property(diags_plain_compile_options COMPILE_OPTIONS)
get_directory_property(diags_plain_link_options LINK_OPTIONS)

# diags_stop_hardening(): what comes after it is not shipped.
macro(diags_stop_hardening)
  set_directory_properties(PROPERTIES COMPILE_OPTIONS "${diags_plain_compile_options}"
                                      LINK_OPTIONS "${diags_plain_link_options}")
endmacro()

if(DIAGS_DEBUG_PACKAGE)
  # Without the name of the folder that it happened to be built in.
  add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:-g;-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
endif()

# Not with the instruments, which find the same mistakes earlier and bring checks of their own.
if(DIAGS_SANITIZE OR DIAGS_COVERAGE OR DIAGS_FUZZ)
  return()
endif()

if(MSVC)
  # Its stack cookies, address layout and no-execute are on unless one turns them off.
  add_compile_options(/guard:cf)
  add_link_options(/guard:cf)
  return()
endif()

include(CheckCXXCompilerFlag)

# diags_harden(<option>): gives it to every C and C++ source, where the compiler has it for this machine.
function(diags_harden option)
  string(MAKE_C_IDENTIFIER "DIAGS_KNOWS${option}" known)
  check_cxx_compiler_flag(${option} ${known})
  if(${known})
    add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:${option}>")
  endif()
endfunction()

diags_harden(-fstack-protector-strong)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  diags_harden(-mbranch-protection=standard)
elseif(NOT WIN32) # Windows knows targets of jumps by tables that gcc does not write
  diags_harden(-fcf-protection=full)
endif()
# Checks of buffers take an optimizing compiler. Some compilers set a level of their own.
add_compile_options(
  "$<$<AND:$<COMPILE_LANGUAGE:C,CXX>,$<CONFIG:Release,RelWithDebInfo,MinSizeRel>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")

if(WIN32)
  add_link_options(LINKER:--dynamicbase LINKER:--nxcompat LINKER:--high-entropy-va)
  # The checks' own code, from the archive: else each program would need one more DLL beside it.
  string(APPEND CMAKE_C_STANDARD_LIBRARIES " -l:libssp.a")
  string(APPEND CMAKE_CXX_STANDARD_LIBRARIES " -l:libssp.a")
else()
  # Pages that guard the stack are Windows' own affair, where the compiler touches each one anyway.
  diags_harden(-fstack-clash-protection)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES C CXX)
  add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
endif()

# What only Windows asks for: version resources, and the compiler's runtime beside the programs.

# diags_add_version_resource(<target> <description>)
#
# Gives a DLL or a program what the properties of its file show: the description and the project's
# version. Does nothing elsewhere.
function(diags_add_version_resource target description)
  if(NOT WIN32)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  get_target_property(file ${target} OUTPUT_NAME)
  if(NOT file)
    set(file ${target})
  endif()
  if(type STREQUAL "EXECUTABLE")
    set(file_name "${file}.exe")
    set(file_type VFT_APP)
  else()
    set(file_name "${file}.dll")
    set(file_type VFT_DLL)
  endif()
  set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/windows/version.rc.in" "${resource}" @ONLY)
  # A library of its own keeps the C++ compiler's options from the resource compiler.
  add_library(${target}_version OBJECT "${resource}")
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_version>)
endfunction()

# The libraries of this set hand C++ exceptions, streams and strings to each other, so they share one
# C++ runtime. Its DLLs lie beside the programs, where Windows looks first: DIAGS_RUNTIME_LIBRARIES.
set(DIAGS_RUNTIME_LIBRARIES "")
if(WIN32)
  enable_language(RC)
endif()
if(MINGW)
  foreach(library libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${library}
                    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    # Where the compiler's programs are on the search path, so are these, and it finds no file.
    if(IS_ABSOLUTE "${path}")
      set(copy "${PROJECT_BINARY_DIR}/bin/${library}")
      file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
      execute_process(COMMAND "${CMAKE_STRIP}" --strip-unneeded -o "${copy}" "${path}"
                      COMMAND_ERROR_IS_FATAL ANY)
      list(APPEND DIAGS_RUNTIME_LIBRARIES "${copy}")
    endif()
  endforeach()
endif()

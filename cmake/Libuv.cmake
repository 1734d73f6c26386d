# The imported target diags_libuv. Not every system's package of it has files for CMake.

# The archive is asked for on Windows, where one DLL less lies beside the programs.
if(WIN32)
  set(diags_libuv_names uv_a libuv uv)
else()
  set(diags_libuv_names uv)
endif()
find_path(DIAGS_LIBUV_INCLUDE_DIR uv.h)
find_library(DIAGS_LIBUV_LIBRARY NAMES ${diags_libuv_names})
mark_as_advanced(DIAGS_LIBUV_INCLUDE_DIR DIAGS_LIBUV_LIBRARY)
if(NOT DIAGS_LIBUV_INCLUDE_DIR OR NOT DIAGS_LIBUV_LIBRARY)
  message(FATAL_ERROR "libuv is missing: uv.h, or the library (Debian: libuv1-dev)")
endif()

add_library(diags_libuv UNKNOWN IMPORTED)
set_target_properties(diags_libuv PROPERTIES IMPORTED_LOCATION "${DIAGS_LIBUV_LIBRARY}"
                                             INTERFACE_INCLUDE_DIRECTORIES
                                             "${DIAGS_LIBUV_INCLUDE_DIR}")
if(WIN32)
  # What it needs itself, which an archive cannot say.
  set_target_properties(
    diags_libuv PROPERTIES INTERFACE_LINK_LIBRARIES
                           "psapi;user32;advapi32;iphlpapi;userenv;ws2_32;dbghelp;ole32;uuid")
endif()

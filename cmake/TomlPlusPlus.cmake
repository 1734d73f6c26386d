# The imported target diags_tomlplusplus: its headers alone. The library that a package of it may bring
# holds the same code compiled; with it, one more library would have to be there at run time.
find_path(DIAGS_TOMLPLUSPLUS_INCLUDE_DIR toml++/toml.h)
mark_as_advanced(DIAGS_TOMLPLUSPLUS_INCLUDE_DIR)
if(NOT DIAGS_TOMLPLUSPLUS_INCLUDE_DIR)
  message(FATAL_ERROR "toml++ is missing: toml++/toml.h (Debian: libtomlplusplus-dev)")
endif()

add_library(diags_tomlplusplus INTERFACE IMPORTED)
set_target_properties(
  diags_tomlplusplus
  PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${DIAGS_TOMLPLUSPLUS_INCLUDE_DIR}"
             INTERFACE_COMPILE_DEFINITIONS "TOML_HEADER_ONLY=1")

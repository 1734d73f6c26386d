# The staged installation: a complete installation root inside the build folder, which the command
# and the end-to-end tests run on.
#
#   kfr/data/*.xml   plans/*.toml   schema/*.mof   providers/<library>, providers/*.registration, providers/*.reg

set(DIAGS_INSTALLATION_DIR "${PROJECT_BINARY_DIR}/installation")

# Everything that puts something into the installation hangs on this target.
add_custom_target(installation ALL)

# diags_stage(DIR <folder in the installation> FILES <file>...)
#
# Copies files of the calling folder into the installation whenever they change.
function(diags_stage)
  cmake_parse_arguments(PARSE_ARGV 0 stage "" "DIR" "FILES")
  set(copies "")
  foreach(file IN LISTS stage_FILES)
    get_filename_component(source "${file}" ABSOLUTE)
    get_filename_component(name "${file}" NAME)
    set(copy "${DIAGS_INSTALLATION_DIR}/${stage_DIR}/${name}")
    add_custom_command(
      OUTPUT "${copy}"
      COMMAND "${CMAKE_COMMAND}" -E copy "${source}" "${copy}"
      DEPENDS "${source}"
      VERBATIM)
    list(APPEND copies "${copy}")
  endforeach()
  set_property(GLOBAL APPEND PROPERTY DIAGS_STAGED ${copies})
  string(MD5 id "${copies}")
  string(SUBSTRING "${id}" 0 8 id)
  add_custom_target(stage_${id} DEPENDS ${copies})
  add_dependencies(installation stage_${id})
endfunction()

# diags_forget_stale_files()
#
# Removes from the installation what an earlier state of the tree put there: a schema file that has
# got another name must not be read twice. The root calls it when all folders have been added.
function(diags_forget_stale_files)
  get_property(staged GLOBAL PROPERTY DIAGS_STAGED)
  get_property(providers GLOBAL PROPERTY DIAGS_PROVIDERS)
  foreach(provider IN LISTS providers)
    list(APPEND staged "${DIAGS_INSTALLATION_DIR}/providers/${CMAKE_SHARED_MODULE_PREFIX}${provider}${CMAKE_SHARED_MODULE_SUFFIX}")
  endforeach()
  file(GLOB present "${DIAGS_INSTALLATION_DIR}/kfr/data/*" "${DIAGS_INSTALLATION_DIR}/plans/*"
       "${DIAGS_INSTALLATION_DIR}/schema/*" "${DIAGS_INSTALLATION_DIR}/providers/*")
  foreach(file IN LISTS present)
    if(NOT file IN_LIST staged)
      file(REMOVE "${file}")
    endif()
  endforeach()
endfunction()

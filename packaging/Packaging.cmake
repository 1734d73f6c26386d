# What `cmake --install` lays down, and the packages made from it.
#
# On Linux the libraries and the installation of the diagnostics share a folder of their own, since
# nothing but the command and hosts that ask for it should load them:
#
#   bin/diags   lib/diagsrunner/{diags-worker, *.so.1, kfr/, schema/, providers/}   include/diagsrunner/
#   lib/cmake/diagsrunner/   lib/<machine>/pkgconfig/   share/{man, doc, bash-completion, zsh}/
#
# On Windows the package is one folder, which runs from wherever it is unpacked, if not every user can
# write there:
#
#   README.txt  COPYRIGHT.txt  diags.exe  diags-worker.exe  *.dll (ours and the C++ runtime)  kfr/  schema/  providers/   include/   lib/*.dll.a   lib/cmake/diagsrunner/

include(CMakePackageConfigHelpers)

# Folders that others than their owner can write have no providers loaded from below them, so an
# installation does not get them from a generous umask. The packages do not go by the umask at all.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/FolderModes.cmake")

if(WIN32)
  set(diags_bin_dir ".")
  set(diags_root_dir ".")
  set(diags_include_dir "include")
else()
  set(diags_bin_dir "bin")
  set(diags_root_dir "lib/diagsrunner")
  set(diags_include_dir "include/diagsrunner")
endif()
set(diags_cmake_dir "lib/cmake/diagsrunner")

set(diags_libraries diagsrunner vorcore kfrxmlparser cmpi_nsp libdiags)
set_target_properties(libdiags PROPERTIES EXPORT_NAME diags)
install(
  TARGETS ${diags_libraries} framework cmpi
  EXPORT diagsrunnerTargets
  RUNTIME DESTINATION ${diags_bin_dir}
  LIBRARY DESTINATION ${diags_root_dir}
  ARCHIVE DESTINATION lib
  INCLUDES
  DESTINATION ${diags_include_dir})
install(TARGETS diags RUNTIME DESTINATION ${diags_bin_dir})
# Nobody starts it but the command: it lies with the libraries that it loads.
install(TARGETS diags-worker RUNTIME DESTINATION ${diags_root_dir})
install(FILES ${DIAGS_RUNTIME_LIBRARIES} DESTINATION ${diags_bin_dir})
if(TARGET diags-slurm)
  # Slurm gives a health check no arguments: a name of its own says what each is.
  install(TARGETS diags-slurm RUNTIME DESTINATION ${diags_root_dir}/slurm)
  foreach(verb health prolog epilog)
    install(CODE "file(CREATE_LINK diags-slurm
                       \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${diags_root_dir}/slurm/${verb}\" SYMBOLIC)")
  endforeach()
endif()
if(WIN32)
  configure_file("${CMAKE_CURRENT_LIST_DIR}/copyright" "${PROJECT_BINARY_DIR}/COPYRIGHT.txt" @ONLY
                 NEWLINE_STYLE CRLF)
  install(FILES "${PROJECT_BINARY_DIR}/COPYRIGHT.txt" DESTINATION ${diags_root_dir})
  configure_file("${CMAKE_CURRENT_LIST_DIR}/README.txt.in" "${PROJECT_BINARY_DIR}/README.txt" @ONLY
                 NEWLINE_STYLE CRLF)
  install(FILES "${PROJECT_BINARY_DIR}/README.txt" DESTINATION ${diags_root_dir})
endif()

get_property(diags_providers GLOBAL PROPERTY DIAGS_PROVIDERS)
install(TARGETS ${diags_providers} LIBRARY DESTINATION ${diags_root_dir}/providers)
# What stands for providers that are not there would be told as missing with each command.
if(WIN32)
  set(diags_absent REGEX "/(95_pcie_tests[.]mof|96_sensors_tests[.]mof|diags(Pcie|Sensors)[.]registration)$"
                   EXCLUDE)
endif()
foreach(part kfr plans schema)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/data/${part}" DESTINATION ${diags_root_dir} ${diags_absent})
endforeach()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/data/providers/" DESTINATION ${diags_root_dir}/providers
        ${diags_absent})

install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/diagsrunner" DESTINATION ${diags_include_dir}
        FILES_MATCHING PATTERN "*.h")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/diags" DESTINATION ${diags_include_dir}
        FILES_MATCHING PATTERN "*.h")
foreach(headers framework cmpi)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/${headers}" DESTINATION ${diags_include_dir}
          FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/substitute/cmpi.nsp/Bootstrap.h"
              "${PROJECT_SOURCE_DIR}/substitute/cmpi.nsp/CallWatch.h"
              "${PROJECT_SOURCE_DIR}/substitute/cmpi.nsp/Problem.h"
              "${PROJECT_SOURCE_DIR}/substitute/cmpi.nsp/ProviderInfo.h"
        DESTINATION ${diags_include_dir}/substitute/cmpi.nsp)

install(EXPORT diagsrunnerTargets NAMESPACE diagsrunner:: DESTINATION ${diags_cmake_dir})
configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/diagsrunnerConfig.cmake.in" "${PROJECT_BINARY_DIR}/diagsrunnerConfig.cmake"
  INSTALL_DESTINATION ${diags_cmake_dir}
  PATH_VARS diags_root_dir)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/diagsrunnerConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/diagsrunnerConfig.cmake"
              "${PROJECT_BINARY_DIR}/diagsrunnerConfigVersion.cmake"
        DESTINATION ${diags_cmake_dir})

if(NOT WIN32)
  # debian/make.sh makes the package of what is installed.
  include("${CMAKE_CURRENT_LIST_DIR}/Completion.cmake")
  include("${CMAKE_CURRENT_LIST_DIR}/Documents.cmake")
  include("${CMAKE_CURRENT_LIST_DIR}/PkgConfig.cmake")
  return()
endif()
set(CPACK_GENERATOR ZIP)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_NAME diagsrunner)
set(CPACK_PACKAGE_VENDOR "diagsrunner")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "find, run and report hardware diagnostics")
set(CPACK_PACKAGE_INSTALL_DIRECTORY diagsrunner)
set(CPACK_PACKAGE_FILE_NAME "diagsrunner-${PROJECT_VERSION}-win64")
include(CPack)

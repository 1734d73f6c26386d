# For hosts and providers that are not built with CMake: what pkg-config tells of an installed copy. The
# place is known when it is installed, and not before.

if(CMAKE_LIBRARY_ARCHITECTURE)
  set(diags_pkgconfig_dir "lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig")
else()
  set(diags_pkgconfig_dir "lib/pkgconfig")
endif()
foreach(name diags diagsrunner diagsrunner-provider)
  set(prepared "${PROJECT_BINARY_DIR}/packaging/${name}.pc")
  configure_file("${CMAKE_CURRENT_LIST_DIR}/${name}.pc.in" "${prepared}.in" @ONLY)
  install(CODE "set(prefix \"\${CMAKE_INSTALL_PREFIX}\")
                set(DOLLAR \"$\")
                configure_file(\"${prepared}.in\" \"${prepared}\")")
  install(FILES "${prepared}" DESTINATION ${diags_pkgconfig_dir})
endforeach()

# Helpers that make the libraries, providers and programs.

# diags_static_names(<variable> <library>...)
#
# Puts the same list into the variable, with the static twin wherever a library has one.
function(diags_static_names variable)
  set(names "")
  foreach(library IN LISTS ARGN)
    if(TARGET ${library}_static)
      list(APPEND names ${library}_static)
    else()
      list(APPEND names ${library})
    endif()
  endforeach()
  set(${variable} "${names}" PARENT_SCOPE)
endfunction()

# diags_unite(<target>): compiles its sources in few pieces, where that was asked for. A source whose
# names clash with another one's has the property SKIP_UNITY_BUILD_INCLUSION.
function(diags_unite target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${DIAGS_UNITY} UNITY_BUILD_BATCH_SIZE 8)
endfunction()

# diags_refuse_unresolved(<target>): what a shared object needs has to be on its link line. Not with
# the sanitizers, whose run time is in the program.
function(diags_refuse_unresolved target)
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT DIAGS_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
endfunction()

# diags_add_library_pair(<name> BUILD_DEFINE <macro> DESCRIPTION <text> SOURCES <file>...
#                        [OUTPUT_NAME <name>] [LIBS <library>...] [PRIVATE_LIBS <library>...]
#                        [DEFINES <definition>...])
#
# Makes the shared library <name> and its twin <name>_static for the unit tests, which can reach
# what the shared one hides. LIBS are handed on to whoever links the library, PRIVATE_LIBS are not;
# the twin links the twins of both. DEFINES hold for the sources alone.
function(diags_add_library_pair name)
  cmake_parse_arguments(PARSE_ARGV 1 pair "" "OUTPUT_NAME;BUILD_DEFINE;DESCRIPTION"
                        "SOURCES;LIBS;PRIVATE_LIBS;DEFINES")
  if(NOT pair_OUTPUT_NAME)
    set(pair_OUTPUT_NAME ${name})
  endif()
  diags_static_names(static_libs ${pair_LIBS})
  diags_static_names(static_private_libs ${pair_PRIVATE_LIBS})

  if(MSVC)
    # What is imported is compiled into the objects, so each twin has its own.
    add_library(${name} SHARED ${pair_SOURCES})
    add_library(${name}_static STATIC ${pair_SOURCES})
    target_compile_definitions(${name} PRIVATE ${pair_BUILD_DEFINE} ${pair_DEFINES})
    target_compile_definitions(${name}_static PRIVATE ${pair_DEFINES})
  else()
    add_library(${name}_objects OBJECT ${pair_SOURCES})
    diags_unite(${name}_objects)
    target_compile_definitions(${name}_objects PRIVATE ${pair_BUILD_DEFINE} ${pair_DEFINES})
    target_link_libraries(
      ${name}_objects PRIVATE framework ${pair_LIBS} ${pair_PRIVATE_LIBS} diags_warnings)
    add_library(${name} SHARED $<TARGET_OBJECTS:${name}_objects>)
    add_library(${name}_static STATIC $<TARGET_OBJECTS:${name}_objects>)
  endif()

  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${pair_OUTPUT_NAME} LINKER_LANGUAGE CXX)
  if(NOT WIN32)
    # Ours lie in one folder. Who runs a program as root does not want it to look in others.
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
    # lib<name>.so.1, which is what was linked, leads to lib<name>.so.1.0.0. The major version changes
    # when what was linked before would not run any more.
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION}
                                             SOVERSION ${PROJECT_VERSION_MAJOR})
  endif()
  target_link_libraries(${name} PUBLIC framework ${pair_LIBS} PRIVATE ${pair_PRIVATE_LIBS}
                                                                      diags_warnings)
  diags_refuse_unresolved(${name})
  diags_add_version_resource(${name} "${pair_DESCRIPTION}")

  set_target_properties(${name}_static PROPERTIES OUTPUT_NAME ${pair_OUTPUT_NAME}_static
                                                  LINKER_LANGUAGE CXX)
  target_compile_definitions(${name}_static PUBLIC NZELVOR20_STATIC DIAGSRUNNER_STATIC)
  target_link_libraries(
    ${name}_static PUBLIC framework ${static_libs} PRIVATE ${static_private_libs} diags_warnings)
endfunction()

# diags_add_executable(<name> SOURCES <file>... [LIBS <library>...] [DESCRIPTION <text>])
#
# A program with a description is shipped and has a version resource.
function(diags_add_executable name)
  cmake_parse_arguments(PARSE_ARGV 1 program "" "DESCRIPTION" "SOURCES;LIBS")
  add_executable(${name} ${program_SOURCES})
  target_link_libraries(${name} PRIVATE framework ${program_LIBS} diags_warnings)
  if(program_DESCRIPTION)
    diags_add_version_resource(${name} "${program_DESCRIPTION}")
  endif()
endfunction()

# diags_put_with_providers(<module> <map>)
#
# Puts a module into the installation's folder of providers, and into the packages. The version script
# tells what it exports.
function(diags_put_with_providers name script)
  set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY
                                           "${DIAGS_INSTALLATION_DIR}/providers$<0:>"
                                           INSTALL_RPATH "")
  diags_refuse_unresolved(${name})
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    target_link_options(${name} PRIVATE "-Wl,--version-script=${script}")
    set_target_properties(${name} PROPERTIES LINK_DEPENDS "${script}")
  endif()
  add_dependencies(installation ${name})
  set_property(GLOBAL APPEND PROPERTY DIAGS_PROVIDERS ${name})
endfunction()

# diags_add_provider(<name> DESCRIPTION <text> PROVIDER <provider> SOURCES <file>...
#                    REGISTRATION <file> [LIBS <library>...])
#
# Makes the CMPI provider library lib<name>.so or <name>.dll, which exports its factory functions
# alone, and puts it into the installation with its registration file. The provider's name is the
# prefix of those functions; they are made here, and the sources define `makeDiagnostics()`.
function(diags_add_provider name)
  cmake_parse_arguments(PARSE_ARGV 1 provider "" "DESCRIPTION;PROVIDER;REGISTRATION" "SOURCES;LIBS")
  set(factories "${CMAKE_CURRENT_BINARY_DIR}/${provider_PROVIDER}Factories.cpp")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/ProviderFactories.cpp.in" "${factories}" @ONLY)
  add_library(${name} MODULE ${provider_SOURCES} "${factories}")
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${provider_LIBS} diags_warnings Threads::Threads)
  diags_add_version_resource(${name} "${provider_DESCRIPTION}")
  diags_put_with_providers(${name} "${PROJECT_SOURCE_DIR}/cmake/provider.map")
  diags_stage(DIR providers FILES ${provider_REGISTRATION})
endfunction()

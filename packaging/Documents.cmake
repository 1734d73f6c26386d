# The manual pages, and the documents and examples for those who use an installed copy. Those for who
# works on the tree (its reasons, the tour, the measurements) stay there.

set(diags_doc_dir "share/doc/diagsrunner")

# diags_compress(<name> <source> <folder>): makes <name>.gz of the source and installs it in the folder.
# There is no time in it, so that the same tree gives the same package.
function(diags_compress name source folder)
  set(packed "${PROJECT_BINARY_DIR}/packaging/${name}.gz")
  add_custom_command(
    OUTPUT "${packed}"
    COMMAND gzip -9nc "${source}" > "${packed}"
    DEPENDS "${source}"
    VERBATIM)
  add_custom_target(packed_${name} ALL DEPENDS "${packed}")
  install(FILES "${packed}" DESTINATION ${folder})
endfunction()

set(changelog "${PROJECT_SOURCE_DIR}/packaging/debian/changelog")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
file(STRINGS "${changelog}" lines)
list(GET lines 0 newest)
if(NOT newest MATCHES "^diagsrunner \\(${PROJECT_VERSION}\\) ")
  message(FATAL_ERROR "${changelog}: the first entry is not of version ${PROJECT_VERSION}: ${newest}")
endif()
list(FILTER lines INCLUDE REGEX "^ -- .*>  ")
list(GET lines 0 signature)
string(REGEX REPLACE "^ -- .*>  [A-Za-z]+, ([0-9]+ [A-Za-z]+ [0-9]+) .*$" "\\1" diags_date "${signature}")

file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/packaging")
# What each command takes, it says itself, of its own grammar; one that cannot run here is without.
set(diags_manual_sections)
if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
  set(diags_manual_sections "${PROJECT_BINARY_DIR}/packaging/manual-sections")
  add_custom_command(
    OUTPUT "${diags_manual_sections}"
    COMMAND diags manual > "${diags_manual_sections}"
    DEPENDS diags
    VERBATIM)
endif()
# diags_make_manual_page(<page> <document> [<sections>]): the page, made of the document of that name in
# docs/ and of a file of sections.
function(diags_make_manual_page page document)
  set(made "${PROJECT_BINARY_DIR}/packaging/${page}")
  set(maker "${PROJECT_SOURCE_DIR}/packaging/manpage.sh")
  set(source "${PROJECT_SOURCE_DIR}/docs/${document}")
  add_custom_command(
    OUTPUT "${made}"
    COMMAND "${maker}" "${page}" "${source}" "${PROJECT_VERSION}" "${diags_date}" ${ARGN} > "${made}"
    DEPENDS "${maker}" "${source}" ${ARGN}
    VERBATIM)
  string(REGEX REPLACE ".*[.]" "" section "${page}")
  diags_compress("${page}" "${made}" share/man/man${section})
endfunction()
diags_make_manual_page(diags.1 diags.md ${diags_manual_sections})
set(diags_manual_page "${PROJECT_BINARY_DIR}/packaging/diags.1")
if(TARGET diags-slurm)
  diags_make_manual_page(diags-slurm.8 slurm.md)
endif()

diags_compress(changelog "${changelog}" ${diags_doc_dir})
install(FILES "${PROJECT_SOURCE_DIR}/packaging/copyright" DESTINATION ${diags_doc_dir})
# What the documents say of the sources is text in an installed copy, which has the examples alone.
file(GLOB documents CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.md" "${PROJECT_SOURCE_DIR}/docs/*.json")
set(unshipped "(README|design|performance|tour)")
list(FILTER documents EXCLUDE REGEX "/${unshipped}\\.md$")
foreach(document IN LISTS documents)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${document}")
  file(READ "${document}" text)
  string(REPLACE "](../examples/" "](@examples@/" text "${text}")
  string(REPLACE "](../integrations/prometheus" "](@examples@/prometheus" text "${text}")
  string(REGEX REPLACE "\\[([^]\n]*)\\]\\(\\.\\./[^)\n]*\\)" "\\1" text "${text}")
  string(REPLACE "](@examples@/" "](../examples/" text "${text}")
  string(REGEX REPLACE "\\[([^]\n]*)\\]\\(${unshipped}\\.md[^)\n]*\\)" "\\1" text "${text}")
  get_filename_component(name "${document}" NAME)
  file(WRITE "${PROJECT_BINARY_DIR}/packaging/docs/${name}" "${text}")
  install(FILES "${PROJECT_BINARY_DIR}/packaging/docs/${name}" DESTINATION ${diags_doc_dir}/docs)
endforeach()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION ${diags_doc_dir})
# Ansible looks for collections there; alert rules and a dashboard are there to be copied.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/integrations/ansible/"
        DESTINATION share/ansible/collections/ansible_collections/diagsrunner/diags
        PATTERN "__pycache__" EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/integrations/prometheus" DESTINATION ${diags_doc_dir}/examples)

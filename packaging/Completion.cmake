# What shells complete command lines with, where they look for it. The command writes it itself, of its own
# grammar; one that cannot run where it is built goes without.

if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  return()
endif()

# diags_complete(<shell> <file> <folder>)
function(diags_complete shell name folder)
  set(script "${PROJECT_BINARY_DIR}/packaging/${shell}-completion/${name}")
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/packaging/${shell}-completion")
  add_custom_command(
    OUTPUT "${script}"
    COMMAND diags completion ${shell} > "${script}"
    DEPENDS diags
    VERBATIM)
  add_custom_target(completion_${shell} ALL DEPENDS "${script}")
  install(FILES "${script}" DESTINATION ${folder})
endfunction()

diags_complete(bash diags share/bash-completion/completions)
diags_complete(zsh _diags share/zsh/vendor-completions)

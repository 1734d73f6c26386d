# Builds for 64-bit Windows on Debian. DIAGS_WINDOWS_PREFIX holds the libraries and headers that
# prefix.sh put there: this machine's own are for another system.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The runtime with POSIX threads is the one that has std::thread and std::mutex.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES DIAGS_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH "${DIAGS_WINDOWS_PREFIX}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(DIAGS_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(DIAGS_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${DIAGS_WINE}")
endif()

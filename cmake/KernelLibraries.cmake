# What the processor test calculates with, each loaded when it runs: Eigen's headers, zstd, libcrypto.

find_path(DIAGS_EIGEN_INCLUDE_DIR Eigen/Core PATH_SUFFIXES eigen3)
if(NOT DIAGS_EIGEN_INCLUDE_DIR)
  message(FATAL_ERROR "Eigen is missing: Eigen/Core (Debian: libeigen3-dev)")
endif()
mark_as_advanced(DIAGS_EIGEN_INCLUDE_DIR)

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  find_package(OpenSSL 3.0 REQUIRED COMPONENTS Crypto)
  find_path(DIAGS_ZSTD_INCLUDE_DIR zstd.h)
  find_library(DIAGS_ZSTD_LIBRARY zstd)
  if(NOT DIAGS_ZSTD_INCLUDE_DIR OR NOT DIAGS_ZSTD_LIBRARY)
    message(FATAL_ERROR "zstd is missing: zstd.h, libzstd.so (Debian: libzstd-dev)")
  endif()
  mark_as_advanced(DIAGS_ZSTD_INCLUDE_DIR DIAGS_ZSTD_LIBRARY)
endif()

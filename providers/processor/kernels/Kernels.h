#pragma once

#include <string>
#include <vector>

#include "providers/processor/operations/Operation.h"

namespace providers {

/// The operations made of whole libraries.
struct Kernels {
  Operations operations;
  std::vector<std::string> missing;  ///< what a library here does not offer, a line each
  /// Why modules that belong to this installation cannot be used, a line each: a test that wants
  /// them covers less than it was to.
  std::vector<std::string> refused;
};

/// All that can be had. Modules are loaded from `folder`, an absolute path, and nowhere else, and
/// stay loaded.
Kernels loadKernels(const std::string& folder);

/// The folder that this library was loaded from; empty where that is not known.
std::string kernelFolder();

/// Those that need no library.
void addMatrixKernels(Operations& operations);

}  // namespace providers

#include <dlfcn.h>

#include "providers/common/LocalModule.h"
#include "providers/processor/kernels/Kernels.h"
#include "providers/processor/kernels/Module.h"
#include "providers/processor/operations/Features.h"

namespace providers {

namespace {

std::string loadModule(const std::string& folder, const std::string& name, Operations& operations) {
  const LocalModule module = loadLocalModule(folder, name);
  if (!module.handle) return module.problem;
  const auto kernels = reinterpret_cast<DiagsKernels>(dlsym(module.handle, DIAGS_KERNELS));
  if (!kernels) return name + " has no kernels";
  std::size_t count = 0;
  const Operation* const first = kernels(&count);
  operations.insert(operations.end(), first, first + count);
  return {};
}

}  // namespace

Kernels loadKernels(const std::string& folder) {
  Kernels kernels;
  addMatrixKernels(kernels.operations);
  if (folder.empty() || folder.front() != '/') {
    kernels.missing.push_back("Modules of kernels: their folder is not known");
    return kernels;
  }
  std::vector<std::string> names{"diagsProcessorZstd", "diagsProcessorCrypto"};
  if (features().avx2) names.push_back("diagsProcessorMatrixAvx2");
  for (const std::string& name : names) {
    const std::string error = loadModule(folder, name, kernels.operations);
    if (!error.empty()) kernels.missing.push_back(error);
  }
  return kernels;
}

std::string kernelFolder() { return folderOfLibrary(reinterpret_cast<const void*>(&kernelFolder)); }

}  // namespace providers

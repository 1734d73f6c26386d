#include <dlfcn.h>

#include "providers/common/LocalModule.h"
#include "providers/processor/kernels/Kernels.h"
#include "providers/processor/kernels/Module.h"
#include "providers/processor/operations/Features.h"

namespace providers {

namespace {

void loadModule(const std::string& folder, const std::string& name, Kernels& kernels) {
  const LocalModule module = loadLocalModule(folder, name);
  if (!module.handle) return kernels.refused.push_back(module.problem);
  const auto operations = reinterpret_cast<DiagsKernels>(dlsym(module.handle, DIAGS_KERNELS));
  if (!operations)
    return kernels.refused.push_back("lib" + name +
                                     ".so is not used: it is of another version than the test, for "
                                     "it has no " DIAGS_KERNELS);
  std::size_t count = 0;
  const Operation* const first = operations(&count);
  for (const Operation* one = first; one != first + count; ++one) {
    if (one->compute) {
      kernels.operations.push_back(*one);
    } else {
      kernels.missing.push_back(std::string(one->name) + ": the library does not offer it");
    }
  }
}

}  // namespace

Kernels loadKernels(const std::string& folder) {
  Kernels kernels;
  addMatrixKernels(kernels.operations);
  std::vector<std::string> names{"diagsProcessorZstd", "diagsProcessorCrypto"};
  if (features().avx2) names.push_back("diagsProcessorMatrixAvx2");
  for (const std::string& name : names) loadModule(folder, name, kernels);
  return kernels;
}

std::string kernelFolder() { return folderOfLibrary(reinterpret_cast<const void*>(&kernelFolder)); }

}  // namespace providers

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include "providers/processor/kernels/Kernels.h"
#include "providers/processor/kernels/Module.h"
#include "providers/processor/operations/Features.h"

namespace providers {

namespace {

/// Whether nobody else can have put it there.
bool isTrusted(const std::string& path) {
  struct stat state = {};
  if (lstat(path.c_str(), &state) != 0) return false;
  return (state.st_uid == 0 || state.st_uid == geteuid()) &&
         (state.st_mode & (S_IWGRP | S_IWOTH)) == 0 && !S_ISLNK(state.st_mode);
}

std::string loadModule(const std::string& folder, const std::string& name, Operations& operations) {
  const std::string path = folder + "/lib" + name + ".so";
  if (access(path.c_str(), F_OK) != 0) return path + " is not there";
  if (!isTrusted(folder) || !isTrusted(path)) return path + " may have been written by others";
  void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) return dlerror();
  const auto kernels = reinterpret_cast<DiagsKernels>(dlsym(module, DIAGS_KERNELS));
  if (!kernels) return path + " has no kernels";
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

std::string kernelFolder() {
  Dl_info info = {};
  if (!dladdr(reinterpret_cast<const void*>(&kernelFolder), &info) || !info.dli_fname) return {};
  const std::string path = info.dli_fname;
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

}  // namespace providers

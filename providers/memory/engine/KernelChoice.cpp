#include "providers/memory/engine/Kernels.h"

namespace providers::memory {

namespace {

#if defined(__x86_64__)
// Where the system does not keep the wide registers, the processor is said not to have them.
bool hasAvx2() { return __builtin_cpu_supports("avx2") != 0; }
bool hasAvx512() { return __builtin_cpu_supports("avx512f") != 0; }
#else
bool hasAvx2() { return false; }
bool hasAvx512() { return false; }
#endif

}  // namespace

std::vector<const Kernels*> availableKernels() {
  std::vector<const Kernels*> list{scalarKernels()};
  if (sse2Kernels()) list.push_back(sse2Kernels());
  if (avx2Kernels() && hasAvx2()) list.push_back(avx2Kernels());
  if (avx512Kernels() && hasAvx512()) list.push_back(avx512Kernels());
  return list;
}

const Kernels& bestKernels() { return *availableKernels().back(); }

}  // namespace providers::memory

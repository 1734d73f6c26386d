#include "providers/processor/operations/Features.h"

#if DIAGS_X86
#include <cpuid.h>
#endif

namespace providers {

namespace {

#if DIAGS_X86

Features readFeatures() {
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  Features found;
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx)) {
    found.clmul = ecx & bit_PCLMUL;
    found.sse41 = ecx & bit_SSE4_1;
    found.crc32 = ecx & bit_SSE4_2;
    found.popcnt = ecx & bit_POPCNT;
    found.aes = ecx & bit_AES;
  }
  if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx)) {
    constexpr unsigned kSha = 1U << 29;
    found.bmi = (ebx & bit_BMI) && (ebx & bit_BMI2);
    found.sha = (ebx & kSha) && found.sse41;
  }
  // These ask the system, too, whether it keeps the wide registers.
  found.avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  found.avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                 __builtin_cpu_supports("avx512dq");
  return found;
}

#else

Features readFeatures() { return {}; }

#endif

}  // namespace

const Features& features() {
  static const Features known = readFeatures();
  return known;
}

}  // namespace providers

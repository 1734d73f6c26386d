#include "providers/processor/operations/Features.h"

#if DIAGS_X86
#include <cpuid.h>
#endif
#if DIAGS_X86 && defined(__linux__)
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace providers {

namespace {

#if DIAGS_X86

/// A process has to ask for tiles, since they make what a signal keeps of a thread larger by 8 kB.
bool getsTiles() {
#if defined(__linux__)
  constexpr int kAskForState = 0x1023;  // ARCH_REQ_XCOMP_PERM
  constexpr int kTileData = 18;
  return syscall(SYS_arch_prctl, kAskForState, kTileData) == 0;
#else
  return false;
#endif
}

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
  constexpr unsigned kField = 1U << 8, kAes = 1U << 9, kClmul = 1U << 10, kDot512 = 1U << 11;
  unsigned wide = 0, dots = 0, tiles = 0;
  if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx)) {
    constexpr unsigned kSha = 1U << 29;
    found.bmi = (ebx & bit_BMI) && (ebx & bit_BMI2);
    found.sha = (ebx & kSha) && found.sse41;
    wide = ecx;
    tiles = edx;
  }
  if (__get_cpuid_count(7, 1, &eax, &ebx, &ecx, &edx)) dots = eax;
  // These ask the system, too, whether it keeps the wide registers.
  found.avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  found.avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                 __builtin_cpu_supports("avx512dq");
  constexpr unsigned kDot256 = 1U << 4;
  found.wideAes = found.avx2 && (wide & kAes);
  found.wideClmul = found.avx2 && (wide & kClmul);
  found.wideField = found.avx2 && (wide & kField);
  found.dot = found.avx2 && (dots & kDot256);
  found.wideDot = found.avx512 && (wide & kDot512);
  constexpr unsigned kTiles = 1U << 24 | 1U << 25;  // themselves, and products of bytes
  found.tiles = (tiles & kTiles) == kTiles && getsTiles();
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

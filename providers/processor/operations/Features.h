#pragma once

#if (defined(__GNUC__) || defined(__clang__)) && defined(__x86_64__)
#define DIAGS_X86 1
#else
#define DIAGS_X86 0
#endif

namespace providers {

/// What instructions this processor has, and the system lets a process use.
struct Features {
  bool popcnt = false;
  bool sse41 = false;
  bool crc32 = false;   // SSE 4.2
  bool bmi = false;     // BMI 1 and 2
  bool avx2 = false;    // with fused multiplication
  bool avx512 = false;  // foundation, bytes and words, double and quad words
  bool clmul = false;
  bool aes = false;
  bool sha = false;
  // Of 256 bits: rounds of AES, products without carries, and in a field of bytes.
  bool wideAes = false;
  bool wideClmul = false;
  bool wideField = false;
  bool dot = false;      // sums of products, of 256 bits (AVX-VNNI)
  bool wideDot = false;  // of 512 bits
  bool tiles = false;    // products of matrices of bytes (AMX)
};

const Features& features();

}  // namespace providers

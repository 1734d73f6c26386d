#include "providers/processor/operations/CipherAnswers.h"
#include "providers/processor/operations/Features.h"
#include "providers/processor/operations/OperationTable.h"

#if DIAGS_X86
#include <immintrin.h>
#endif

// The instructions for ciphers, hashes and checksums.

namespace providers {

#if DIAGS_X86

namespace {

constexpr unsigned kSteps = 8;

inline __m128i load(const std::uint64_t* words) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(words));
}

inline void store(std::uint64_t* words, __m128i value) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(words), value);
}

__attribute__((target("pclmul"))) void carrylessBlock(const std::uint64_t* operands,
                                                      std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    __m128i x = load(operands + 4 * item);
    const __m128i y = load(operands + 4 * item + 2);
    for (unsigned step = 0; step < kSteps; ++step) {
      x = _mm_xor_si128(_mm_clmulepi64_si128(x, y, 0x00), _mm_shuffle_epi32(x, 0x4E));
      x = _mm_xor_si128(_mm_clmulepi64_si128(x, y, 0x11), _mm_shuffle_epi32(x, 0x4E));
    }
    store(results + 2 * item, x);
  }
}

void carrylessAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  Block128 x{operands[0], operands[1]};
  for (unsigned step = 0; step < kSteps; ++step) {
    Block128 product = carrylessProduct(x.low, operands[2]);
    x = {product.low ^ x.high, product.high ^ x.low};
    product = carrylessProduct(x.high, operands[3]);
    x = {product.low ^ x.high, product.high ^ x.low};
  }
  results[0] = x.low;
  results[1] = x.high;
}

__attribute__((target("sse4.2"))) void crcBlock(const std::uint64_t* operands,
                                                std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    std::uint64_t crc = operands[8 * item];
    for (std::size_t i = 1; i < 8; ++i) crc = _mm_crc32_u64(crc, operands[8 * item + i]);
    results[item] = crc;
  }
}

void crcAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint64_t crc = operands[0];
  for (std::size_t i = 1; i < 8; ++i) crc = crc32c(crc, operands[i]);
  *results = crc;
}

__attribute__((target("aes"))) void aesBlock(const std::uint64_t* operands, std::uint64_t* results,
                                             std::size_t items) {
  for (std::size_t item = 0; item < items; ++item) {
    __m128i x = load(operands + 4 * item), y = x;
    const __m128i key = load(operands + 4 * item + 2);
    for (unsigned step = 0; step < kSteps; ++step) {
      x = _mm_aesenc_si128(x, key);
      y = _mm_aesdec_si128(y, x);
    }
    store(results + 4 * item, x);
    store(results + 4 * item + 2, y);
  }
}

void aesAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  Block128 x{operands[0], operands[1]}, y = x;
  for (unsigned step = 0; step < kSteps; ++step) {
    x = aesRound(x, {operands[2], operands[3]});
    y = aesInverseRound(y, x);
  }
  results[0] = x.low;
  results[1] = x.high;
  results[2] = y.low;
  results[3] = y.high;
}

/// Two items side by side.
__attribute__((target("avx2"), always_inline)) inline __m256i loadPair(
    const std::uint64_t* first, const std::uint64_t* second) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(load(first)), load(second), 1);
}

__attribute__((target("avx2"), always_inline)) inline void storePair(std::uint64_t* first,
                                                                     std::uint64_t* second,
                                                                     __m256i values) {
  store(first, _mm256_castsi256_si128(values));
  store(second, _mm256_extracti128_si256(values, 1));
}

__attribute__((target("vaes,avx2"))) void wideAesBlock(const std::uint64_t* operands,
                                                       std::uint64_t* results, std::size_t items) {
  for (std::size_t word = 0; word + 4 < 4 * items; word += 8) {
    __m256i x = loadPair(operands + word, operands + word + 4), y = x;
    const __m256i key = loadPair(operands + word + 2, operands + word + 6);
    for (unsigned step = 0; step < kSteps; ++step) {
      x = _mm256_aesenc_epi128(x, key);
      y = _mm256_aesdec_epi128(y, x);
    }
    storePair(results + word, results + word + 4, x);
    storePair(results + word + 2, results + word + 6, y);
  }
}

__attribute__((target("vpclmulqdq,avx2"))) void wideCarrylessBlock(const std::uint64_t* operands,
                                                                   std::uint64_t* results,
                                                                   std::size_t items) {
  for (std::size_t item = 0; item + 1 < items; item += 2) {
    const std::uint64_t* const first = operands + 4 * item;
    __m256i x = loadPair(first, first + 4);
    const __m256i y = loadPair(first + 2, first + 6);
    for (unsigned step = 0; step < kSteps; ++step) {
      x = _mm256_xor_si256(_mm256_clmulepi64_epi128(x, y, 0x00), _mm256_shuffle_epi32(x, 0x4E));
      x = _mm256_xor_si256(_mm256_clmulepi64_epi128(x, y, 0x11), _mm256_shuffle_epi32(x, 0x4E));
    }
    storePair(results + 2 * item, results + 2 * item + 2, x);
  }
}

/// Products and inverses of bytes in the field of AES.
__attribute__((target("gfni,avx2"))) void fieldBlock(const std::uint64_t* operands,
                                                     std::uint64_t* results, std::size_t items) {
  const __m256i asTheyAre = _mm256_set1_epi64x(0x0102040810204080);
  for (std::size_t word = 0; word + 4 < 4 * items; word += 8) {
    __m256i x = loadPair(operands + word, operands + word + 4);
    const __m256i y = loadPair(operands + word + 2, operands + word + 6);
    for (unsigned step = 0; step < kSteps; ++step) {
      x = _mm256_xor_si256(_mm256_gf2p8mul_epi8(x, y), _mm256_shuffle_epi32(x, 0x4E));
      x = _mm256_gf2p8affineinv_epi64_epi8(x, asTheyAre, 0);
    }
    storePair(results + word / 2, results + word / 2 + 2, x);
  }
}

std::uint64_t fieldStep(std::uint64_t x, std::uint64_t y, std::uint64_t other) {
  constexpr unsigned kByte = 8;
  std::uint64_t result = 0;
  for (unsigned shift = 0; shift < 64; shift += kByte) {
    const auto product =
        fieldProduct(static_cast<std::uint8_t>(x >> shift), static_cast<std::uint8_t>(y >> shift));
    const auto sum = static_cast<std::uint8_t>(product ^ other >> shift);
    result |= std::uint64_t{fieldInverse(sum)} << shift;
  }
  return result;
}

void fieldAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  Block128 x{operands[0], operands[1]};
  for (unsigned step = 0; step < kSteps; ++step)
    x = {fieldStep(x.low, operands[2], x.high), fieldStep(x.high, operands[3], x.low)};
  results[0] = x.low;
  results[1] = x.high;
}

constexpr std::size_t kShaState = 4;  // words, of two numbers each
constexpr std::size_t kShaOperands = kShaState + 8;

/// The instruction keeps the state as (a, b, e, f) and (c, d, g, h), the first of them highest.
__attribute__((target("sha,sse4.1"))) void shaItem(const std::uint64_t* operands,
                                                   std::uint64_t* results) {
  const __m128i first = load(operands), second = load(operands + 2);  // a b c d, e f g h
  const __m128i left = _mm_shuffle_epi32(first, 0xB1), right = _mm_shuffle_epi32(second, 0x1B);
  const __m128i abef = _mm_alignr_epi8(left, right, 8);
  const __m128i cdgh = _mm_blend_epi16(right, left, 0xF0);
  __m128i x = abef, y = cdgh, words[4];
  for (std::size_t i = 0; i < 4; ++i) words[i] = load(operands + kShaState + 2 * i);
  for (std::size_t i = 0; i < 16; ++i) {
    const auto* constants = reinterpret_cast<const __m128i*>(kSha256 + 4 * i);
    const __m128i sum = _mm_add_epi32(words[i % 4], _mm_loadu_si128(constants));
    y = _mm_sha256rnds2_epu32(y, x, sum);
    x = _mm_sha256rnds2_epu32(x, y, _mm_shuffle_epi32(sum, 0x0E));
    const __m128i last = words[(i + 3) % 4], before = words[(i + 2) % 4];
    const __m128i mixed = _mm_sha256msg1_epu32(words[i % 4], words[(i + 1) % 4]);
    words[i % 4] =
        _mm_sha256msg2_epu32(_mm_add_epi32(mixed, _mm_alignr_epi8(last, before, 4)), last);
  }
  x = _mm_shuffle_epi32(_mm_add_epi32(x, abef), 0x1B);
  y = _mm_shuffle_epi32(_mm_add_epi32(y, cdgh), 0xB1);
  store(results, _mm_blend_epi16(x, y, 0xF0));
  store(results + 2, _mm_alignr_epi8(y, x, 8));
}

__attribute__((target("sha,sse4.1"))) void shaBlock(const std::uint64_t* operands,
                                                    std::uint64_t* results, std::size_t items) {
  for (std::size_t item = 0; item < items; ++item)
    shaItem(operands + item * kShaOperands, results + item * kShaState);
}

void shaAnswer(const std::uint64_t* operands, std::uint64_t* results) {
  std::uint32_t state[8], block[16];
  for (unsigned i = 0; i < 8; ++i)
    state[i] = static_cast<std::uint32_t>(operands[i / 2] >> (i % 2 * 32));
  for (unsigned i = 0; i < 16; ++i)
    block[i] = static_cast<std::uint32_t>(operands[kShaState + i / 2] >> (i % 2 * 32));
  sha256Block(block, state);
  for (unsigned i = 0; i < kShaState; ++i)
    results[i] = std::uint64_t{state[2 * i + 1]} << 32 | state[2 * i];
}

}  // namespace

void addCipherOperations(Operations& operations) {
  if (features().clmul)
    operations.push_back({"Carry-less multiplication (PCLMULQDQ)", Unit::Cipher, 4, 2, 64, nullptr,
                          carrylessBlock, carrylessAnswer});
  if (features().crc32)
    operations.push_back(
        {"Checksum (CRC32)", Unit::Cipher, 8, 1, 128, nullptr, crcBlock, crcAnswer});
  if (features().aes)
    operations.push_back(
        {"Rounds of AES (AES-NI)", Unit::Cipher, 4, 4, 16, nullptr, aesBlock, aesAnswer});
  if (features().sha)
    operations.push_back({"Rounds of SHA-256 (SHA)", Unit::Cipher, kShaOperands, kShaState, 32,
                          nullptr, shaBlock, shaAnswer});
  if (features().wideClmul)
    operations.push_back({"Carry-less multiplication, 256 bits (VPCLMULQDQ)", Unit::Cipher, 4, 2,
                          64, nullptr, wideCarrylessBlock, carrylessAnswer});
  if (features().wideAes)
    operations.push_back({"Rounds of AES, 256 bits (VAES)", Unit::Cipher, 4, 4, 16, nullptr,
                          wideAesBlock, aesAnswer});
  if (features().wideField)
    operations.push_back({"Products in a field of bytes, 256 bits (GFNI)", Unit::Cipher, 4, 2, 16,
                          nullptr, fieldBlock, fieldAnswer});
}

#else

void addCipherOperations(Operations&) {}

#endif

}  // namespace providers

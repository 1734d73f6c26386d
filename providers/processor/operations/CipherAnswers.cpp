#include "providers/processor/operations/CipherAnswers.h"

#include <array>

namespace providers {

namespace {

using Bytes = std::array<std::uint8_t, 16>;

Bytes bytesOf(const Block128& block) {
  Bytes bytes{};
  for (unsigned i = 0; i < 16; ++i)
    bytes[i] = static_cast<std::uint8_t>((i < 8 ? block.low : block.high) >> (i % 8 * 8));
  return bytes;
}

Block128 blockOf(const Bytes& bytes) {
  Block128 block;
  for (unsigned i = 0; i < 16; ++i)
    (i < 8 ? block.low : block.high) |= std::uint64_t{bytes[i]} << (i % 8 * 8);
  return block;
}

std::uint8_t rotate8(std::uint8_t value, unsigned by) {
  return static_cast<std::uint8_t>(value << by | value >> (8 - by));
}

std::uint8_t substitute(std::uint8_t value) {
  const std::uint8_t x = fieldInverse(value);
  return static_cast<std::uint8_t>(x ^ rotate8(x, 1) ^ rotate8(x, 2) ^ rotate8(x, 3) ^
                                   rotate8(x, 4) ^ 0x63);
}

std::uint8_t substituteBack(std::uint8_t value) {
  return fieldInverse(
      static_cast<std::uint8_t>(rotate8(value, 1) ^ rotate8(value, 3) ^ rotate8(value, 6) ^ 0x05));
}

/// Rows are shifted, bytes replaced, columns multiplied by the polynomial, and the key added.
template <class Substitute>
Block128 round(const Block128& state, const Block128& key, unsigned rowShift,
               const std::array<std::uint8_t, 4>& polynomial, Substitute replace) {
  const Bytes before = bytesOf(state);
  Bytes replaced{}, mixed{};
  for (unsigned i = 0; i < 16; ++i) replaced[i] = replace(before[(i + i % 4 * rowShift) % 16]);
  for (unsigned i = 0; i < 16; ++i)
    for (unsigned row = 0; row < 4; ++row)
      mixed[i] ^= fieldProduct(replaced[i / 4 * 4 + row], polynomial[(row + 4 - i % 4) % 4]);
  const Block128 result = blockOf(mixed);
  return {result.low ^ key.low, result.high ^ key.high};
}

std::uint32_t rotateRight(std::uint32_t value, unsigned by) {
  return value >> by | value << (32 - by);
}

}  // namespace

const std::uint32_t kSha256[64] = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

std::uint8_t fieldProduct(std::uint8_t left, std::uint8_t right) {
  unsigned product = 0, factor = left;
  for (unsigned bit = 0; bit < 8; ++bit) {
    if (right >> bit & 1) product ^= factor;
    factor = factor << 1 ^ (factor & 0x80 ? 0x11BU : 0);
  }
  return static_cast<std::uint8_t>(product);
}

std::uint8_t fieldInverse(std::uint8_t value) {
  // The 254th power.
  std::uint8_t power = 1, square = value;
  for (unsigned bit = 1; bit < 8; ++bit) {
    square = fieldProduct(square, square);
    power = fieldProduct(power, square);
  }
  return power;
}

Block128 carrylessProduct(std::uint64_t left, std::uint64_t right) {
  Block128 product;
  for (unsigned bit = 0; bit < 64; ++bit) {
    if (!(right >> bit & 1)) continue;
    product.low ^= left << bit;
    if (bit) product.high ^= left >> (64 - bit);
  }
  return product;
}

std::uint64_t crc32c(std::uint64_t crc, std::uint64_t data) {
  constexpr std::uint64_t kPolynomial = 0x82F63B78;  // bits reversed
  std::uint64_t rest = (crc & 0xFFFFFFFF) ^ data;
  for (unsigned bit = 0; bit < 64; ++bit) rest = rest >> 1 ^ (rest & 1 ? kPolynomial : 0);
  return rest;
}

Block128 aesRound(const Block128& state, const Block128& key) {
  return round(state, key, 4, {2, 3, 1, 1}, substitute);
}

Block128 aesInverseRound(const Block128& state, const Block128& key) {
  return round(state, key, 12, {14, 11, 13, 9}, substituteBack);
}

void sha256Block(const std::uint32_t* block, std::uint32_t* state) {
  std::uint32_t words[64], s[8];
  for (unsigned i = 0; i < 16; ++i) words[i] = block[i];
  for (unsigned i = 16; i < 64; ++i) {
    const std::uint32_t a = words[i - 15], b = words[i - 2];
    words[i] = words[i - 16] + (rotateRight(a, 7) ^ rotateRight(a, 18) ^ a >> 3) + words[i - 7] +
               (rotateRight(b, 17) ^ rotateRight(b, 19) ^ b >> 10);
  }
  for (unsigned i = 0; i < 8; ++i) s[i] = state[i];
  for (unsigned i = 0; i < 64; ++i) {
    const std::uint32_t first =
        s[7] + (rotateRight(s[4], 6) ^ rotateRight(s[4], 11) ^ rotateRight(s[4], 25)) +
        ((s[4] & s[5]) ^ (~s[4] & s[6])) + kSha256[i] + words[i];
    const std::uint32_t second =
        (rotateRight(s[0], 2) ^ rotateRight(s[0], 13) ^ rotateRight(s[0], 22)) +
        ((s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]));
    for (unsigned j = 7; j > 0; --j) s[j] = s[j - 1];
    s[4] += first;
    s[0] = first + second;
  }
  for (unsigned i = 0; i < 8; ++i) state[i] += s[i];
}

}  // namespace providers

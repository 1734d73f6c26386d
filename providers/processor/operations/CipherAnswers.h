#pragma once

#include <cstdint>

// What the instructions for ciphers and checksums do, by shifts and exclusive ors alone.

namespace providers {

/// 128 bits, the low word first.
struct Block128 {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
};

/// The product without carries.
Block128 carrylessProduct(std::uint64_t left, std::uint64_t right);

/// The product of two bytes in the field of AES, and what makes 1 with a byte (of 0: 0).
std::uint8_t fieldProduct(std::uint8_t left, std::uint8_t right);
std::uint8_t fieldInverse(std::uint8_t value);

/// CRC-32C of eight more bytes.
std::uint64_t crc32c(std::uint64_t crc, std::uint64_t data);

/// A round of AES, and one of its inverse as the instruction has it, with this round key.
Block128 aesRound(const Block128& state, const Block128& key);
Block128 aesInverseRound(const Block128& state, const Block128& key);

/// SHA-256 of one more block of 16 numbers: changes the eight numbers of the state.
void sha256Block(const std::uint32_t* block, std::uint32_t* state);
/// Its constants, one a round.
extern const std::uint32_t kSha256[64];

}  // namespace providers

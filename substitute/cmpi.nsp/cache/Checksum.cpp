#include "substitute/cmpi.nsp/cache/Checksum.h"

#include <cstddef>
#include <cstring>

namespace cmpinsp {

namespace {

constexpr std::size_t kWord = sizeof(std::uint64_t);
constexpr std::size_t kLanes = 4;  // independent of each other, so that the processor overlaps them

/// One-to-one in each of both: a difference in either never gets lost.
std::uint64_t mixed(std::uint64_t sum, std::uint64_t word) noexcept {
  sum = (sum ^ word) * 0x9E3779B97F4A7C15ULL;
  return sum ^ (sum >> 32U);
}

std::uint64_t wordAt(const char* bytes) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, kWord);
  return word;
}

}  // namespace

std::uint64_t checksumOf(std::string_view bytes) noexcept {
  std::uint64_t lanes[kLanes] = {1, 2, 3, 4};
  std::uint64_t sum = mixed(0, bytes.size());
  while (bytes.size() >= kLanes * kWord) {
    for (std::size_t i = 0; i < kLanes; ++i) {
      lanes[i] = mixed(lanes[i], wordAt(bytes.data() + i * kWord));
    }
    bytes.remove_prefix(kLanes * kWord);
  }
  for (const std::uint64_t lane : lanes) sum = mixed(sum, lane);
  for (const char byte : bytes) sum = mixed(sum, static_cast<unsigned char>(byte));
  return sum;
}

}  // namespace cmpinsp

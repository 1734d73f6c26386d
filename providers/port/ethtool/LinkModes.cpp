#include "providers/port/ethtool/LinkModes.h"

#include <linux/ethtool.h>

#include <array>
#include <cstring>
#include <vector>

namespace providers::port {

namespace {

using Bits = std::vector<std::uint32_t>;

/// The modes of a stretch of bits, ETHTOOL_LINK_MODE_*_BIT: numbers, since older headers have not
/// all of them. What is no mode (pause, connectors, error correction) is left out.
struct ModeRange {
  unsigned first;
  unsigned last;
  std::uint32_t megabits;
  bool full = true;
};

constexpr std::array<ModeRange, 32> kModes{{
    {0, 0, 10, false},   {1, 1, 10},       {2, 2, 100, false},   {3, 3, 100},
    {4, 4, 1000, false}, {5, 5, 1000},     {12, 12, 10000},      {15, 15, 2500},
    {17, 17, 1000},      {18, 20, 10000},  {21, 22, 20000},      {23, 26, 40000},
    {27, 30, 56000},     {31, 33, 25000},  {34, 35, 50000},      {36, 39, 100000},
    {40, 40, 50000},     {41, 41, 1000},   {42, 46, 10000},      {47, 47, 2500},
    {48, 48, 5000},      {52, 56, 50000},  {57, 61, 100000},     {62, 66, 200000},
    {67, 67, 100},       {68, 68, 1000},   {69, 73, 400000},     {75, 79, 100000},
    {80, 84, 200000},    {85, 89, 400000}, {90, 90, 100, false}, {91, 91, 100},
}};

bool has(const Bits& bits, unsigned bit) {
  constexpr unsigned kWidth = 32;
  return bit / kWidth < bits.size() && (bits[bit / kWidth] >> bit % kWidth & 1U) != 0;
}

/// The fastest mode whose bits are in both; full duplex before half.
std::optional<LinkMode> best(const Bits& one, const Bits& other) {
  std::optional<LinkMode> found;
  for (const ModeRange& range : kModes) {
    for (unsigned bit = range.first; bit <= range.last; ++bit) {
      if (!has(one, bit) || !has(other, bit)) continue;
      const bool better = !found || range.megabits > found->megabits ||
                          (range.megabits == found->megabits && range.full);
      if (better) found = LinkMode{range.megabits, range.full};
    }
  }
  return found;
}

/// The first answer tells how many words there are, the second one has them.
struct Answer {
  Bits supported;
  Bits offered;
  Bits partner;
};

Answer ask(EthtoolDoor& door, const std::string& port) {
  constexpr std::size_t kMaps = 3;
  constexpr int kMostWords = 127;
  std::vector<std::uint64_t> room(
      (sizeof(ethtool_link_settings) + kMaps * kMostWords * sizeof(std::uint32_t)) /
          sizeof(std::uint64_t) +
      1);
  auto& settings = *reinterpret_cast<ethtool_link_settings*>(room.data());
  settings.cmd = ETHTOOL_GLINKSETTINGS;
  if (door.ask(port, room.data()) != 0 || settings.link_mode_masks_nwords >= 0) return {};
  const int words = -settings.link_mode_masks_nwords;
  settings.cmd = ETHTOOL_GLINKSETTINGS;
  settings.link_mode_masks_nwords = static_cast<signed char>(words);
  if (words > kMostWords || door.ask(port, room.data()) != 0) return {};
  const char* const behind =
      reinterpret_cast<const char*>(room.data()) + sizeof(ethtool_link_settings);
  const auto map = [&](std::size_t index) {
    Bits bits(static_cast<std::size_t>(words));
    const std::size_t bytes = bits.size() * sizeof(std::uint32_t);
    std::memcpy(bits.data(), behind + index * bytes, bytes);
    return bits;
  };
  return {map(0), map(1), map(2)};
}

}  // namespace

LinkModes readLinkModes(EthtoolDoor& door, const std::string& port) {
  const Answer answer = ask(door, port);
  return {best(answer.supported, answer.supported), best(answer.offered, answer.partner)};
}

}  // namespace providers::port

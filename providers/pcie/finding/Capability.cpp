#include "providers/pcie/finding/Capability.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace providers::pcie {

namespace {

/// A number of so many bytes, the lowest first; nothing beyond the end.
std::optional<std::uint32_t> numberAt(const std::string& bytes, std::size_t place,
                                      std::size_t width) {
  constexpr unsigned kByte = 8;
  if (place + width > bytes.size()) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = width; i-- > 0;)
    number = number << kByte | static_cast<unsigned char>(bytes[place + i]);
  return number;
}

/// Where the PCI Express capability stands in the list of all.
std::optional<std::size_t> expressCapability(const std::string& bytes) {
  constexpr std::size_t kStatus = 0x06, kFirst = 0x34;
  constexpr std::uint32_t kHasList = 0x10, kExpress = 0x10, kPlace = 0xFC;
  constexpr int kMost = 48;  // more than fit: a list that leads back into itself ends, too
  if ((numberAt(bytes, kStatus, 2).value_or(0) & kHasList) == 0) return std::nullopt;
  std::size_t place = numberAt(bytes, kFirst, 1).value_or(0) & kPlace;
  for (int i = 0; i < kMost && place != 0; ++i) {
    if (numberAt(bytes, place, 1) == kExpress) return place;
    place = numberAt(bytes, place + 1, 1).value_or(0) & kPlace;
  }
  return std::nullopt;
}

}  // namespace

std::optional<unsigned> targetSpeed(const std::string& configuration) {
  constexpr std::size_t kLinkControl2 = 0x30;
  constexpr std::uint32_t kTarget = 0x0F;
  static constexpr std::array<unsigned, 7> kSpeeds{0, 25, 50, 80, 160, 320, 640};
  const auto place = expressCapability(configuration);
  if (!place) return std::nullopt;
  const std::uint32_t code =
      numberAt(configuration, *place + kLinkControl2, 2).value_or(0) & kTarget;
  if (code == 0 || code >= kSpeeds.size()) return std::nullopt;
  return kSpeeds[code];
}

}  // namespace providers::pcie

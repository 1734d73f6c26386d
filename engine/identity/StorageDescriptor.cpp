#include "engine/identity/StorageDescriptor.h"

#include <cstddef>

#include "engine/identity/Words.h"

namespace engine {
namespace {

// Where the fields are, in bytes from the beginning; numbers have their lowest byte first.
constexpr std::size_t kRemovable = 10;
constexpr std::size_t kVendor = 12;
constexpr std::size_t kProduct = 16;
constexpr std::size_t kRevision = 20;
constexpr std::size_t kSerial = 24;
constexpr std::size_t kBus = 28;
constexpr std::size_t kLeast = 36;

std::uint32_t numberAt(std::string_view descriptor, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t byte = 4; byte-- > 0;) {
    number = number << 8U | static_cast<unsigned char>(descriptor[at + byte]);
  }
  return number;
}

/// The text that a field points to; it ends with a zero byte, or with the descriptor.
std::string_view textAt(std::string_view descriptor, std::size_t field) {
  const std::uint32_t at = numberAt(descriptor, field);
  if (at < kLeast || at >= descriptor.size()) return {};
  const std::string_view text = descriptor.substr(at);
  return text.substr(0, text.find('\0'));
}

/// On some buses what stands for the maker is the bus.
std::string makerIn(std::string_view descriptor) {
  constexpr std::uint32_t kAtapi = 2;
  constexpr std::uint32_t kAta = 3;
  constexpr std::uint32_t kUsb = 7;
  constexpr std::uint32_t kSata = 11;
  constexpr std::uint32_t kNvme = 17;
  switch (numberAt(descriptor, kBus)) {
    case kAtapi:
    case kAta:
    case kUsb:
    case kSata:
    case kNvme:
      return {};
    default:
      return telling(textAt(descriptor, kVendor));
  }
}

}  // namespace

std::optional<unsigned> driveNumber(const std::string& name) {
  constexpr std::string_view kBefore = "PhysicalDrive";
  constexpr std::size_t kMostDigits = 4;
  if (name.compare(0, kBefore.size(), kBefore) != 0) return std::nullopt;
  const std::string digits = name.substr(kBefore.size());
  if (digits.empty() || digits.size() > kMostDigits) return std::nullopt;
  if (digits.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
  return static_cast<unsigned>(std::stoul(digits));
}

std::optional<Part> diskOfDescriptor(unsigned number, std::string_view descriptor,
                                     std::uint64_t bytes) {
  if (descriptor.size() < kLeast || descriptor[kRemovable] != 0) return std::nullopt;
  Part part;
  part.kind = "disk";
  part.location = "disk " + std::to_string(number);
  part.manufacturer = makerIn(descriptor);
  part.model = telling(textAt(descriptor, kProduct));
  part.name = joined({part.location, joined({part.model, diskSize(bytes)}, " ")}, ": ");
  part.version = telling(textAt(descriptor, kRevision));
  part.serial = tellingSerial(textAt(descriptor, kSerial));
  return part;
}

}  // namespace engine

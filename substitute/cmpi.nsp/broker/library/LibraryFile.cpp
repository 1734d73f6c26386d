#include "substitute/cmpi.nsp/broker/library/LibraryFile.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>

namespace cmpinsp::broker {

namespace {

/// What the head of a file says: the system that it is for, the processor, as both formats name it.
struct Format {
  const char* system;
  std::string machine;

  bool operator==(const Format& other) const {
    return std::string(system) == other.system && machine == other.machine;
  }
  std::string toText() const { return std::string(system) + ", " + machine; }
};

struct Machine {
  std::uint16_t number;
  const char* name;
};
constexpr Machine kElfMachines[] = {{3, "x86"},      {8, "MIPS"},    {20, "PowerPC"},
                                    {21, "PowerPC"}, {22, "S/390"},  {40, "ARM"},
                                    {62, "x86-64"},  {183, "ARM64"}, {243, "RISC-V"}};
constexpr Machine kPeMachines[] = {
    {0x014C, "x86"}, {0x01C0, "ARM"}, {0x01C4, "ARM"}, {0x8664, "x86-64"}, {0xAA64, "ARM64"}};

template <std::size_t Count>
std::string nameOf(const Machine (&machines)[Count], unsigned number) {
  for (const Machine& machine : machines)
    if (machine.number == number) return machine.name;
  return "machine " + std::to_string(number);
}

/// A little or big endian number at a place of the file; nothing where the file ends before it.
std::optional<std::uint32_t> numberAt(std::istream& file, std::uint32_t offset, unsigned bytes,
                                      bool bigEndian) {
  std::array<char, 4> data{};
  file.clear();
  file.seekg(offset);
  if (!file.read(data.data(), bytes)) return std::nullopt;
  std::uint32_t number = 0;
  for (unsigned i = 0; i < bytes; ++i) {
    const unsigned shift = 8 * (bigEndian ? bytes - 1 - i : i);
    number |= static_cast<std::uint32_t>(static_cast<unsigned char>(data.at(i))) << shift;
  }
  return number;
}

std::optional<Format> elfFormat(std::istream& file) {
  constexpr std::uint32_t kMagic = 0x464C457F;  // "\x7F" "ELF"
  constexpr std::uint32_t kBitsOffset = 4, kEndianOffset = 5, kMachineOffset = 18;
  if (numberAt(file, 0, 4, false) != kMagic) return std::nullopt;
  const bool bigEndian = numberAt(file, kEndianOffset, 1, false) == 2U;
  const auto machine = numberAt(file, kMachineOffset, 2, bigEndian);
  if (!machine) return std::nullopt;
  const bool wide = numberAt(file, kBitsOffset, 1, false) == 2U;
  return Format{"Linux", nameOf(kElfMachines, *machine) + (wide ? ", 64 bits" : ", 32 bits")};
}

std::optional<Format> peFormat(std::istream& file) {
  constexpr std::uint32_t kDosMagic = 0x5A4D, kPeMagic = 0x00004550;  // "MZ", "PE"
  constexpr std::uint32_t kHeaderPointer = 0x3C, kOptionalHeader = 24, kWideMagic = 0x20B;
  if (numberAt(file, 0, 2, false) != kDosMagic) return std::nullopt;
  const auto header = numberAt(file, kHeaderPointer, 4, false);
  if (!header || numberAt(file, *header, 4, false) != kPeMagic) return std::nullopt;
  const auto machine = numberAt(file, *header + 4, 2, false);
  if (!machine) return std::nullopt;
  const bool wide = numberAt(file, *header + kOptionalHeader, 2, false) == kWideMagic;
  return Format{"Windows", nameOf(kPeMachines, *machine) + (wide ? ", 64 bits" : ", 32 bits")};
}

#if defined(_WIN32)
constexpr const char* kSystem = "Windows";
#else
constexpr const char* kSystem = "Linux";
#endif

/// Nothing on a machine that is not in the tables.
std::optional<Format> ownFormat() {
  const std::string bits = sizeof(void*) == 8 ? ", 64 bits" : ", 32 bits";
#if defined(__x86_64__) || defined(_M_X64)
  return Format{kSystem, "x86-64" + bits};
#elif defined(__aarch64__) || defined(_M_ARM64)
  return Format{kSystem, "ARM64" + bits};
#else
  return std::nullopt;
#endif
}

}  // namespace

std::string foreignFormat(const std::string& path) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  const auto own = ownFormat();
  if (!file || !own) return std::string();
  auto format = elfFormat(file);
  if (!format) format = peFormat(file);
  if (!format) return "the file is no library";
  if (*format == *own) return std::string();
  return "the library is for another kind of machine (" + format->toText() +
         "), this one is: " + own->toText();
}

}  // namespace cmpinsp::broker

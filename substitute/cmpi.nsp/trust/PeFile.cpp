#include "substitute/cmpi.nsp/trust/PeFile.h"

#include <utility>

namespace cmpinsp {

namespace {

// Names and numbers of the format.
constexpr std::size_t kFileHeaderSize = 24;
constexpr std::size_t kDirectories = 112, kDirectorySize = 8;
constexpr std::size_t kImports = 1, kDelayedImports = 13;
constexpr std::size_t kSectionSize = 40;
constexpr std::uint64_t kWideMagic = 0x20B, kMachine64 = 0x8664;

// Beyond these no library is honest.
constexpr std::size_t kMostSections = 96, kMostImports = 4096, kLongestImport = 4096;

struct PeDamage {
  const char* what;
};

/// A table of imports: how long an entry is, and where in it is the address of the name.
struct ImportTable {
  std::size_t directory, entrySize, nameOffset;
};
constexpr ImportTable kImportTable{kImports, 20, 12};
constexpr ImportTable kDelayedTable{kDelayedImports, 32, 4};

/// One reading of one file. Its functions throw `PeDamage`.
class PeReader {
 public:
  PeReader(Bytes& bytes, PeFile& file) : m_bytes(bytes), m_file(file) {}

  /// Leaves the kind where the loader refuses the file for its header.
  void read() {
    if (m_bytes.number(0, 2) != 0x5A4DU) return;
    const auto place = m_bytes.number(0x3C, 4);
    const auto header = place ? m_bytes.read(*place, kFileHeaderSize) : std::nullopt;
    if (!header || numberIn(*header, 0, 4) != 0x4550U) return;
    m_optional = *place + kFileHeaderSize;
    m_file.kind = LibraryKind::kForeign;
    if (numberIn(*header, 4, 2) != kMachine64 || m_bytes.number(m_optional, 2) != kWideMagic)
      return;
    m_file.kind = LibraryKind::kUsable;
    const std::size_t length = numberIn(*header, 20, 2);
    readSections(m_optional + length, numberIn(*header, 6, 2));
    m_file.needed = names(kImportTable);
    m_file.delayed = names(kDelayedTable);
  }

 private:
  void readSections(std::uint64_t offset, std::size_t count) {
    if (count > kMostSections) throw PeDamage{"it has too many sections"};
    auto table = m_bytes.read(offset, count * kSectionSize);
    if (!table) throw PeDamage{"its sections are not in the file"};
    m_sections = std::move(*table);
  }

  /// Where in the file that address is.
  std::uint64_t offsetOf(std::uint64_t address) const {
    for (std::size_t at = 0; at < m_sections.size(); at += kSectionSize) {
      const std::uint64_t begin = numberIn(m_sections, at + 12, 4);
      const std::uint64_t length = numberIn(m_sections, at + 16, 4);
      if (address < begin || address - begin >= length) continue;
      return numberIn(m_sections, at + 20, 4) + (address - begin);
    }
    throw PeDamage{"an address is not in the file"};
  }

  /// The address of a table; 0 where there is none.
  std::uint64_t addressOf(std::size_t directory) {
    const auto count = m_bytes.number(m_optional + kDirectories - 4, 4);
    if (!count) throw PeDamage{"its header is not in the file"};
    if (*count <= directory) return 0;
    const auto address = m_bytes.number(m_optional + kDirectories + directory * kDirectorySize, 4);
    if (!address) throw PeDamage{"its header is not in the file"};
    return *address;
  }

  std::vector<std::string> names(const ImportTable& table) {
    std::vector<std::string> names;
    const std::uint64_t address = addressOf(table.directory);
    if (address == 0) return names;
    for (std::uint64_t at = offsetOf(address);; at += table.entrySize) {
      const auto place = m_bytes.number(at + table.nameOffset, 4);
      if (!place) throw PeDamage{"its imports have no end"};
      if (*place == 0) return names;
      if (names.size() == kMostImports) throw PeDamage{"it needs too many libraries"};
      auto name = m_bytes.text(offsetOf(*place), kLongestImport);
      if (!name) throw PeDamage{"the name of an import has no end"};
      names.push_back(std::move(*name));
    }
  }

  Bytes& m_bytes;
  PeFile& m_file;
  std::uint64_t m_optional = 0;  ///< where the header that speaks of the tables begins
  std::string m_sections;
};

}  // namespace

PeFile readPe(Bytes& bytes) {
  PeFile file;
  try {
    PeReader(bytes, file).read();
  } catch (const PeDamage& damage) {
    file = {};
    file.kind = LibraryKind::kDamaged;
    file.fault = damage.what;
  }
  return file;
}

}  // namespace cmpinsp

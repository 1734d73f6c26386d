#include "substitute/cmpi.nsp/trust/ElfFile.h"

#include <algorithm>
#include <map>
#include <utility>

namespace cmpinsp {

namespace {

// Names and numbers of the format.
constexpr std::size_t kHeaderSize = 64;
constexpr std::size_t kSegmentSize = 56;
constexpr std::size_t kEntrySize = 16;
constexpr std::uint64_t kLoad = 1, kDynamic = 2;
constexpr std::uint64_t kEnd = 0, kNeeded = 1, kStrings = 5, kOwnName = 14, kRPath = 15,
                        kRunPath = 29, kFlags = 0x6FFFFFFB, kAuxiliary = 0x7FFFFFFD,
                        kFilter = 0x7FFFFFFF;
constexpr std::uint64_t kNoDefaultFolders = 0x800;
#if defined(__aarch64__)
constexpr std::uint64_t kElfMachine = 183;
#else
constexpr std::uint64_t kElfMachine = 62;
#endif

// Beyond these no library is honest.
constexpr std::size_t kMostEntries = 65536, kMostNames = 4096;
constexpr std::size_t kLongestName = 4096, kLongestPath = 65536;

/// A part of the file that is mapped to addresses.
struct Segment {
  std::uint64_t type, offset, address, length;
};

struct ElfDamage {
  const char* what;
};

/// One reading of one file. Its functions throw `ElfDamage`.
class ElfReader {
 public:
  ElfReader(Bytes& bytes, ElfFile& file) : m_bytes(bytes), m_file(file) {}

  /// Leaves the kind where the loader refuses the file for its header.
  void read() {
    const auto header = m_bytes.read(0, kHeaderSize);
    if (!header || header->compare(0, 4,
                                   "\x7F"
                                   "ELF") != 0)
      return;
    m_file.kind = LibraryKind::kForeign;
    if (header->at(4) != 2 || header->at(5) != 1 || numberIn(*header, 18, 2) != kElfMachine) return;
    m_file.kind = LibraryKind::kUsable;
    readSegments(*header);
    const auto dynamic = std::find_if(m_segments.rbegin(), m_segments.rend(),
                                      [](const Segment& each) { return each.type == kDynamic; });
    if (dynamic == m_segments.rend()) return;
    readEntries(dynamic->address);
    readNames();
  }

 private:
  void readSegments(const std::string& header) {
    if (numberIn(header, 54, 2) != kSegmentSize) throw ElfDamage{"its segments have another size"};
    const std::uint64_t count = numberIn(header, 56, 2);
    const auto table = m_bytes.read(numberIn(header, 32, 8), count * kSegmentSize);
    if (!table) throw ElfDamage{"its segments are not in the file"};
    for (std::size_t at = 0; at < table->size(); at += kSegmentSize) {
      const Segment segment{numberIn(*table, at, 4), numberIn(*table, at + 8, 8),
                            numberIn(*table, at + 16, 8), numberIn(*table, at + 32, 8)};
      const bool counts = segment.type == kLoad || segment.type == kDynamic;
      if (counts && segment.length != 0) m_segments.push_back(segment);
    }
  }

  /// Where in the file that address is: the loader goes by addresses alone.
  std::uint64_t offsetOf(std::uint64_t address) const {
    for (auto each = m_segments.rbegin(); each != m_segments.rend(); ++each) {
      if (each->type != kLoad || address < each->address) continue;
      const std::uint64_t distance = address - each->address;
      if (distance < each->length && each->offset <= m_bytes.size()) return each->offset + distance;
    }
    throw ElfDamage{"an address is not in the file"};
  }

  void readEntries(std::uint64_t address) {
    constexpr std::size_t kAtOnce = 64;
    const std::uint64_t begin = offsetOf(address);
    for (std::size_t count = 0; count < kMostEntries; count += kAtOnce) {
      const std::uint64_t at = begin + count * kEntrySize;
      const std::uint64_t left = at < m_bytes.size() ? m_bytes.size() - at : 0;
      const std::size_t whole = std::min<std::uint64_t>(left / kEntrySize, kAtOnce);
      const auto piece = m_bytes.read(at, whole * kEntrySize);
      if (!piece || piece->empty()) break;
      for (std::size_t entry = 0; entry < piece->size(); entry += kEntrySize) {
        const std::uint64_t tag = numberIn(*piece, entry, 8);
        if (tag == kEnd) return;
        take(tag, numberIn(*piece, entry + 8, 8));
      }
    }
    throw ElfDamage{"its dynamic section has no end"};
  }

  void take(std::uint64_t tag, std::uint64_t value) {
    const bool isName = tag == kNeeded || tag == kAuxiliary || tag == kFilter;
    if (isName) {
      if (m_names.size() == kMostNames) throw ElfDamage{"it needs too many libraries"};
      m_names.emplace_back(tag, value);
    } else {
      m_single[tag] = value;  // the last one counts
    }
  }

  std::string textAt(std::uint64_t strings, std::uint64_t index, std::size_t most) {
    const std::uint64_t address = strings + index;
    if (address < strings) throw ElfDamage{"a text is not in the file"};
    auto text = m_bytes.text(offsetOf(address), most);
    if (!text) throw ElfDamage{"a text is too long"};
    return std::move(*text);
  }

  std::optional<std::string> single(std::uint64_t tag, std::size_t most) {
    const auto found = m_single.find(tag);
    if (found == m_single.end()) return std::nullopt;
    return textAt(strings(), found->second, most);
  }

  std::uint64_t strings() const {
    const auto found = m_single.find(kStrings);
    if (found == m_single.end()) throw ElfDamage{"it has no texts"};
    return found->second;
  }

  void readNames() {
    for (const auto& [tag, index] : m_names) {
      auto& list = tag == kAuxiliary ? m_file.auxiliary : m_file.needed;
      list.push_back(textAt(strings(), index, kLongestName));
    }
    m_file.name = single(kOwnName, kLongestName).value_or(std::string());
    m_file.runPath = single(kRunPath, kLongestPath);
    // The loader passes the one over where the other is there.
    if (!m_file.runPath) m_file.runPathOfAll = single(kRPath, kLongestPath);
    const auto flags = m_single.find(kFlags);
    m_file.withoutDefaultFolders =
        flags != m_single.end() && (flags->second & kNoDefaultFolders) != 0;
  }

  Bytes& m_bytes;
  ElfFile& m_file;
  std::vector<Segment> m_segments;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> m_names;  ///< tags, and where in the texts
  std::map<std::uint64_t, std::uint64_t> m_single;
};

}  // namespace

ElfFile readElf(Bytes& bytes) {
  ElfFile file;
  try {
    ElfReader(bytes, file).read();
  } catch (const ElfDamage& damage) {
    file = {};
    file.kind = LibraryKind::kDamaged;
    file.fault = damage.what;
  }
  return file;
}

}  // namespace cmpinsp

#include "firmware/SmbiosTable.h"

#include <algorithm>

namespace firmware {
namespace {

constexpr unsigned kEndType = 127;
constexpr std::size_t kHeaderSize = 4;
constexpr std::string_view kClose("\0\0", 2);

}  // namespace

std::uint64_t SmbiosStructure::number(std::size_t offset, std::size_t bytes) const {
  if (offset + bytes > m_area.size()) return 0;
  std::uint64_t number = 0;
  for (std::size_t i = bytes; i > 0; --i) {
    number = number << 8U | static_cast<unsigned char>(m_area[offset + i - 1]);
  }
  return number;
}

std::string_view SmbiosStructure::text(std::size_t offset) const {
  std::uint64_t left = number(offset, 1);
  for (std::string_view texts = m_texts; left > 0 && !texts.empty();) {
    const std::string_view text = texts.substr(0, texts.find('\0'));
    if (text.empty()) break;
    if (--left == 0) return text;
    texts.remove_prefix(std::min(text.size() + 1, texts.size()));
  }
  return {};
}

void forEachStructure(std::string_view table,
                      const std::function<void(const SmbiosStructure&)>& show) {
  while (table.size() >= kHeaderSize) {
    const std::size_t areaSize = static_cast<unsigned char>(table[1]);
    if (areaSize < kHeaderSize || areaSize > table.size()) return;
    const std::size_t end = table.find(kClose, areaSize);
    if (end == std::string_view::npos) return;
    const SmbiosStructure structure(table.substr(0, areaSize),
                                    table.substr(areaSize, end - areaSize));
    if (structure.type() == kEndType) return;
    show(structure);
    table.remove_prefix(end + kClose.size());
  }
}

}  // namespace firmware

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace firmware {

/// One structure of a machine's table (DSP0134, 6.1): its formatted area and, behind it, its texts.
class SmbiosStructure {
 public:
  SmbiosStructure(std::string_view area, std::string_view texts) : m_area(area), m_texts(texts) {}

  unsigned type() const { return static_cast<unsigned char>(m_area.front()); }
  /// What other structures name it by.
  unsigned handle() const { return static_cast<unsigned>(number(2, 2)); }
  bool has(std::size_t offset) const { return offset < m_area.size(); }

  /// The number of that many bytes at `offset`; 0 where the structure is shorter.
  std::uint64_t number(std::size_t offset, std::size_t bytes) const;

  /// The text whose number, counted from 1, stands at `offset`, as it is; empty where there is
  /// none.
  std::string_view text(std::size_t offset) const;

 private:
  std::string_view m_area;
  std::string_view m_texts;
};

/// Shows each structure of the table, up to its end. Whatever is cut off or contradicts itself ends
/// the reading; what was shown before stands.
void forEachStructure(std::string_view table,
                      const std::function<void(const SmbiosStructure&)>& show);

}  // namespace firmware

#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace cmpinsp {

/// Appends numbers, little-endian, and texts to bytes that a `ByteReader` reads back.
class ByteWriter {
 public:
  void u8(std::uint8_t value) { m_bytes.push_back(static_cast<char>(value)); }
  void u32(std::uint32_t value) { number(value, 4); }
  void u64(std::uint64_t value) { number(value, 8); }

  /// A flag for each bit, the first one lowest.
  void flags(std::initializer_list<bool> bits) {
    unsigned sum = 0;
    unsigned bit = 1;
    for (const bool isSet : bits) {
      if (isSet) sum += bit;
      bit *= 2;
    }
    u8(static_cast<std::uint8_t>(sum));
  }

  void count(std::size_t value) { u32(static_cast<std::uint32_t>(value)); }

  void text(std::string_view value) {
    count(value.size());
    m_bytes.append(value);
  }

  const std::string& bytes() const noexcept { return m_bytes; }

 private:
  void number(std::uint64_t value, int width) {
    for (int i = 0; i < width; ++i) m_bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
  }

  std::string m_bytes;
};

}  // namespace cmpinsp

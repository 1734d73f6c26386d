#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace engine {

/// Makes a table as a machine's firmware hands it over, structure by structure.
class FirmwareTable {
 public:
  struct Number {
    std::size_t offset;
    std::size_t bytes;
    std::uint64_t value;
  };
  using Texts = std::vector<std::pair<std::size_t, std::string>>;

  /// A structure of that many bytes, with these texts at their places.
  FirmwareTable& add(unsigned type, std::size_t size, const Texts& texts,
                     const std::vector<Number>& numbers = {}) {
    std::string area(size, '\0');
    std::string strings;
    area[0] = static_cast<char>(type);
    area[1] = static_cast<char>(size);
    char count = 0;
    for (const auto& [offset, text] : texts) {
      area[offset] = ++count;
      strings += text + '\0';
    }
    for (const Number& number : numbers) {
      for (std::size_t i = 0; i < number.bytes; ++i) {
        area[number.offset + i] = static_cast<char>(number.value >> (8 * i));
      }
    }
    m_bytes += area + (strings.empty() ? std::string(1, '\0') : strings) + '\0';
    return *this;
  }

  FirmwareTable& firmware() {
    return add(0, 0x1A, {{4, "Maker"}, {5, "X1 2.17"}, {8, "03/12/2026"}});
  }
  FirmwareTable& system(const std::string& serial = "SYS-4711") {
    return add(1, 0x1B, {{4, "Maker"}, {5, "Box 9000"}, {6, "rev 2"}, {7, serial}, {0x19, "B9-X"}});
  }
  FirmwareTable& board() {
    return add(2, 0x0F, {{4, "Maker"}, {5, "B9"}, {6, "1.1"}, {7, "BRD-1"}, {0x0A, "main"}});
  }
  FirmwareTable& processor(const std::string& socket, const std::vector<Number>& numbers) {
    std::vector<Number> all = {{5, 1, 3}, {0x18, 1, 0x41}};
    all.insert(all.end(), numbers.begin(), numbers.end());
    return add(4, 0x30,
               {{4, socket}, {7, "Chips"}, {0x10, "Chip 77 "}, {0x20, "C-1"}, {0x22, "CH77"}}, all);
  }
  FirmwareTable& module(const std::string& slot, const std::string& serial,
                        const std::vector<Number>& numbers) {
    return add(17, 0x5C,
               {{0x10, slot},
                {0x11, "NODE 0"},
                {0x17, "Rams"},
                {0x18, serial},
                {0x1A, "R-16G  "},
                {0x2B, "fw 3"}},
               numbers);
  }
  FirmwareTable& end() { return add(127, 4, {}); }

  const std::string& bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

/// Of 16 GiB DDR4 at 3200.
inline std::vector<FirmwareTable::Number> usualModule() {
  return {{0x0C, 2, 16384}, {0x12, 1, 0x1A}, {0x15, 2, 3200}};
}

}  // namespace engine

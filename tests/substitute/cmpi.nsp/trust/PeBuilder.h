#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace cmpinsp {

/// Writes a library for Windows with what it needs, without any code in it.
struct PeBuilder {
  std::vector<std::string> needed{};
  std::vector<std::string> delayed{};
  std::uint64_t machine = 0x8664;

  // Where things lie; addresses differ from places in the file.
  static constexpr std::uint64_t kAddress = 0x3000, kHeader = 0x40, kOptional = kHeader + 24,
                                 kOptionalSize = 240, kSection = kOptional + kOptionalSize,
                                 kContent = kSection + 40;

  std::string bytes() const {
    std::string names;
    const std::uint64_t delayedAt = (needed.size() + 1) * 20;
    const std::uint64_t namesAt = delayedAt + (delayed.size() + 1) * 32;
    std::string content;
    for (const std::string& each : needed) {
      content += number(0, 12) + number(kAddress + namesAt + names.size(), 4) + number(1, 4);
      names += each + '\0';
    }
    content += number(0, 20);
    for (const std::string& each : delayed) {
      content += number(1, 4) + number(kAddress + namesAt + names.size(), 4) + number(0, 24);
      names += each + '\0';
    }
    content += number(0, 32) + names;
    return head(delayedAt, content.size()) + content;
  }

  static std::string number(std::uint64_t value, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
      text += i < 8 ? static_cast<char>(value >> (8 * i) & 0xFFU) : '\0';
    }
    return text;
  }

 private:
  std::string head(std::uint64_t delayedAt, std::size_t size) const {
    std::string text = "MZ" + number(0, 0x3A) + number(kHeader, 4);
    text += number(0x4550, 4) + number(machine, 2) + number(1, 2) + number(0, 12) +
            number(kOptionalSize, 2) + number(0x2022, 2);
    std::string optional = number(0x20B, 2) + number(0, 106) + number(16, 4);
    for (std::size_t i = 0; i < 16; ++i) {
      const std::uint64_t place = i == 1 ? kAddress : i == 13 ? kAddress + delayedAt : 0;
      optional += number(place, 4) + number(place == 0 ? 0 : 20, 4);
    }
    return text + optional + number(0, 8) + number(size, 4) + number(kAddress, 4) +
           number(size, 4) + number(kContent, 4) + number(0, 16);
  }
};

}  // namespace cmpinsp

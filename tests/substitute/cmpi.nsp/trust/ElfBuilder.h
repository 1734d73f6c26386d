#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cmpinsp {

/// Writes a library as the loader reads it, without any code in it.
struct ElfBuilder {
  std::vector<std::string> needed{};
  std::optional<std::string> runPathOfAll{};
  std::optional<std::string> runPath{};
  std::string name{};
  std::vector<std::string> auxiliary{};
  std::vector<std::string> filters{};
  std::uint64_t flags = 0;
  std::uint64_t machine = kOwnMachine;

#if defined(__aarch64__)
  static constexpr std::uint64_t kOwnMachine = 183;
#else
  static constexpr std::uint64_t kOwnMachine = 62;
#endif
  // Where things lie; addresses differ from places in the file.
  static constexpr std::uint64_t kAddress = 0x40000;
  static constexpr std::size_t kHeader = 64, kSegment = 56, kDynamic = kHeader + 2 * kSegment;

  std::string bytes() const {
    std::string strings(1, '\0');
    const auto dynamic = entries(strings);
    const std::uint64_t stringsAt = kDynamic + (dynamic.size() + 2) * 16;
    const std::uint64_t size = stringsAt + strings.size();
    std::string text = header() + segment(1, 0, size) + segment(2, kDynamic, stringsAt - kDynamic);
    for (const auto& [tag, value] : dynamic) text += number(tag, 8) + number(value, 8);
    text += number(5, 8) + number(kAddress + stringsAt, 8) + number(0, 8) + number(0, 8);
    return text + strings;
  }

  static std::string number(std::uint64_t value, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>(value >> (8 * i) & 0xFFU);
    return text;
  }

 private:
  std::string header() const {
    return std::string(
               "\x7F"
               "ELF\2\1\1\0",
               8) +
           number(0, 8) + number(3, 2) + number(machine, 2) + number(1, 4) + number(0, 8) +
           number(kHeader, 8) + number(0, 8) + number(0, 4) + number(kHeader, 2) +
           number(kSegment, 2) + number(2, 2) + number(0, 6);
  }

  static std::string segment(std::uint64_t type, std::uint64_t offset, std::uint64_t size) {
    return number(type, 4) + number(4, 4) + number(offset, 8) + number(kAddress + offset, 8) +
           number(0, 8) + number(size, 8) + number(size, 8) + number(8, 8);
  }

  std::vector<std::pair<std::uint64_t, std::uint64_t>> entries(std::string& strings) const {
    std::vector<std::pair<std::uint64_t, std::uint64_t>> list;
    const auto add = [&](std::uint64_t tag, const std::string& text) {
      list.emplace_back(tag, strings.size());
      strings += text + '\0';
    };
    for (const std::string& each : needed) add(1, each);
    if (!name.empty()) add(14, name);
    if (runPathOfAll) add(15, *runPathOfAll);
    if (runPath) add(29, *runPath);
    for (const std::string& each : auxiliary) add(0x7FFFFFFD, each);
    for (const std::string& each : filters) add(0x7FFFFFFF, each);
    if (flags != 0) list.emplace_back(0x6FFFFFFB, flags);
    return list;
  }
};

}  // namespace cmpinsp

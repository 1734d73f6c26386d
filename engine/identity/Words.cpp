#include "engine/identity/Words.h"

#include <algorithm>
#include <array>

namespace engine {
namespace {

std::string withTenths(std::uint64_t tenths) {
  const std::string whole = std::to_string(tenths / 10);
  return tenths % 10 == 0 ? whole : whole + "." + std::to_string(tenths % 10);
}

}  // namespace

std::string joined(std::initializer_list<std::string> texts, std::string_view between) {
  std::string all;
  for (const std::string& text : texts) {
    if (text.empty()) continue;
    if (!all.empty()) all += between;
    all += text;
  }
  return all;
}

std::string memorySize(std::uint64_t bytes) {
  constexpr std::array<const char*, 4> kUnits = {" KiB", " MiB", " GiB", " TiB"};
  std::uint64_t count = bytes / 1024;
  std::size_t unit = 0;
  for (; count >= 1024 && count % 1024 == 0 && unit + 1 < kUnits.size(); ++unit) count /= 1024;
  return count == 0 ? std::string() : std::to_string(count) + kUnits[unit];
}

std::string diskSize(std::uint64_t bytes) {
  constexpr std::uint64_t kMega = 1'000'000;
  constexpr std::uint64_t kGiga = 1000 * kMega;
  constexpr std::uint64_t kTera = 1000 * kGiga;
  if (bytes == 0) return {};
  if (bytes < kGiga) return std::to_string(std::max<std::uint64_t>(bytes / kMega, 1)) + " MB";
  if (bytes < kTera) return std::to_string(bytes / kGiga) + " GB";
  return withTenths(bytes / (kTera / 10)) + " TB";
}

std::string counted(std::uint64_t count, const std::string& what) {
  if (count == 0) return {};
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace engine

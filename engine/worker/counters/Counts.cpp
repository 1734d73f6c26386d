#include "engine/worker/counters/Counts.h"

#include <charconv>
#include <optional>
#include <sstream>
#include <string_view>

namespace engine::counters {
namespace {

/// Decimal, or with "0x" in front as disks have it; nothing where anything else is there.
std::optional<std::uint64_t> numberIn(std::string_view text) {
  const bool isHex = text.substr(0, 2) == "0x";
  if (isHex) text.remove_prefix(2);
  std::uint64_t number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number, isHex ? 16 : 10);
  const bool isWhole = end.ec == std::errc() && end.ptr == text.data() + text.size();
  return isWhole ? std::optional<std::uint64_t>(number) : std::nullopt;
}

void add(Counts& counts, const std::string& name, const std::string& text) {
  if (const auto number = numberIn(text)) counts[name] += *number;
}

/// "BadTLP 3", one a line; the last line is the sum of the others.
Counts rowsIn(const std::string& content) {
  Counts counts;
  std::istringstream rows(content);
  for (std::string row; std::getline(rows, row);) {
    std::istringstream words(row);
    std::string name;
    std::string number;
    if (words >> name >> number && name.rfind("TOTAL_", 0) != 0) add(counts, name, number);
  }
  return counts;
}

/// "CPU0 CPU2" above "5 7 Machine check exceptions".
Counts columnsIn(const std::string& content) {
  Counts counts;
  const std::size_t end = content.find('\n');
  std::istringstream names(content.substr(0, end));
  std::istringstream numbers(end == std::string::npos ? std::string() : content.substr(end + 1));
  std::string name;
  for (std::string number; names >> name && numbers >> number;) add(counts, name, number);
  return counts;
}

}  // namespace

Counts countsIn(const Key& key, const std::string& content) {
  const auto& [place, part, file] = key;
  if (place == Place::kPci) return rowsIn(content);
  if (place == Place::kMachineCheck) return columnsIn(content);
  Counts counts;
  std::istringstream words(content);
  std::string number;
  std::string rest;
  if (words >> number && !(words >> rest)) add(counts, file, number);
  return counts;
}

}  // namespace engine::counters

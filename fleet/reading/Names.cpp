#include "fleet/reading/Names.h"

#include <algorithm>

#include "fleet/Answer.h"

namespace fleet {

Names::Names() { numberOf({}); }

std::uint32_t Names::numberOf(std::string_view text) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const auto found = m_numbers.find(text);
  if (found != m_numbers.end()) return found->second;
  const auto number = static_cast<std::uint32_t>(m_texts.size());
  m_numbers.emplace(m_texts.emplace_back(text), number);
  return number;
}

const std::string& Names::textOf(std::uint32_t number) const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_texts[number];
}

std::string lowered(std::string_view text) {
  std::string low(text);
  std::transform(low.begin(), low.end(), low.begin(), [](char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
  });
  return low;
}

std::string shortened(std::string_view text) {
  if (text.size() <= kLongestText) return std::string(text);
  constexpr std::string_view kEllipsis = "...";
  std::size_t end = kLongestText - kEllipsis.size();
  while (end > kLongestText - 8 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) --end;
  return std::string(text.substr(0, end)).append(kEllipsis);
}

}  // namespace fleet

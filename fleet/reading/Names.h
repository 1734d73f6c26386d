#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace fleet {

/// Gives each text a number, the same one each time; 0 is the empty text. Any thread may call it.
class Names {
 public:
  Names();

  std::uint32_t numberOf(std::string_view text);
  /// Valid as long as this lives.
  const std::string& textOf(std::uint32_t number) const;

 private:
  mutable std::mutex m_mutex;
  std::deque<std::string> m_texts;
  std::unordered_map<std::string_view, std::uint32_t> m_numbers;
};

/// The text, cut to `kLongestText`.
std::string shortened(std::string_view text);

/// Its ASCII letters in lower case.
std::string lowered(std::string_view text);

}  // namespace fleet

#include "text/CloseMatches.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace text {
namespace {

constexpr std::size_t kMostSuggestions = 3;

std::string lowerCase(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

}  // namespace

std::size_t editDistance(const std::string& left, const std::string& right, std::size_t limit) {
  const std::size_t lengths[] = {left.size(), right.size()};
  if (std::max(lengths[0], lengths[1]) - std::min(lengths[0], lengths[1]) > limit) return limit + 1;

  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t exchanged = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({exchanged, row[j] + 1, row[j - 1] + 1});
    }
  }
  return std::min(row.back(), limit + 1);
}

std::vector<std::string> closeMatches(const std::string& text,
                                      const std::vector<std::string>& candidates,
                                      std::size_t most) {
  const std::string wanted = lowerCase(text);
  if (wanted.empty()) return {};
  const std::size_t limit = std::max<std::size_t>(2, wanted.size() / 3);

  std::vector<std::pair<std::size_t, std::string>> ranked;
  for (const std::string& candidate : candidates) {
    const std::string offered = lowerCase(candidate);
    const bool contained = offered.find(wanted) != std::string::npos;
    const std::size_t distance = contained ? 0 : editDistance(wanted, offered, limit);
    if (distance <= limit) ranked.emplace_back(distance, candidate);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& one, const auto& other) { return one.first < other.first; });

  std::vector<std::string> matches;
  for (const auto& [distance, candidate] : ranked) {
    if (matches.size() == most) break;
    matches.push_back(candidate);
  }
  return matches;
}

std::string quotedList(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) {
    list += (list.empty() ? "\"" : ", \"") + text + "\"";
  }
  return list;
}

std::string suggestions(const std::string& text, const std::vector<std::string>& candidates) {
  const std::vector<std::string> close = closeMatches(text, candidates, kMostSuggestions);
  return close.empty() ? std::string() : "; close to it: " + quotedList(close);
}

}  // namespace text

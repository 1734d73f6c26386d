#include "engine/plan/Glob.h"

#include <cstddef>
#include <optional>

namespace engine {
namespace {

/// The bytes of the sign at the front of a text that is not empty.
std::size_t signLength(std::string_view text) noexcept {
  const auto first = static_cast<unsigned char>(text[0]);
  const std::size_t length = first >= 0xF0 && first < 0xF8   ? 4
                             : first >= 0xE0 && first < 0xF0 ? 3
                             : first >= 0xC2 && first < 0xE0 ? 2
                                                             : 1;
  if (length > text.size()) return 1;
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 1;
  }
  return length;
}

std::string_view firstSign(std::string_view text) noexcept {
  return text.substr(0, signLength(text));
}

/// UTF-8 sorts as its signs do.
bool isBetween(std::string_view sign, std::string_view first, std::string_view last) noexcept {
  return first <= sign && sign <= last;
}

struct Step {
  std::size_t length;  ///< of the pattern
  bool fits;
};

/// The bracket at the front of `pattern`; nothing where it has no end.
std::optional<Step> bracket(std::string_view pattern, std::string_view sign) noexcept {
  std::size_t at = 1;
  const bool isInverted = at < pattern.size() && pattern[at] == '!';
  if (isInverted) ++at;
  bool isAmong = false;
  for (const std::size_t start = at; at < pattern.size();) {
    if (pattern[at] == ']' && at != start) return Step{at + 1, isAmong != isInverted};
    const std::string_view first = firstSign(pattern.substr(at));
    std::string_view last = first;
    at += first.size();
    if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']') {
      last = firstSign(pattern.substr(at + 1));
      at += 1 + last.size();
    }
    isAmong = isAmong || isBetween(sign, first, last);
  }
  return std::nullopt;
}

/// What the part of the pattern at its front, which is no star, says of one sign.
Step step(std::string_view pattern, std::string_view sign) noexcept {
  if (pattern[0] == '?') return {1, true};
  if (pattern[0] == '[') {
    if (const auto found = bracket(pattern, sign)) return *found;
  }
  const std::string_view own = firstSign(pattern);
  return {own.size(), own == sign};
}

}  // namespace

bool isGlob(std::string_view text) noexcept {
  return text.find_first_of("*?[") != std::string_view::npos;
}

bool matchesGlob(std::string_view pattern, std::string_view text) noexcept {
  // The last star takes one sign more each time that what follows it does not fit; the ones before
  // it need never change.
  std::optional<std::string_view> behindStar;
  std::string_view starTakes;
  while (!text.empty()) {
    if (!pattern.empty() && pattern[0] == '*') {
      pattern.remove_prefix(1);
      behindStar = pattern;
      starTakes = text;
      continue;
    }
    const std::string_view sign = firstSign(text);
    const Step next = pattern.empty() ? Step{0, false} : step(pattern, sign);
    if (next.fits) {
      pattern.remove_prefix(next.length);
      text.remove_prefix(sign.size());
      continue;
    }
    if (!behindStar) return false;
    starTakes.remove_prefix(signLength(starTakes));
    pattern = *behindStar;
    text = starTakes;
  }
  return pattern.find_first_not_of('*') == std::string_view::npos;
}

}  // namespace engine

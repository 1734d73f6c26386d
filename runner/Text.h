#pragma once

#include <string>
#include <string_view>

namespace diagsrunner {

/// Case-sensitive substring search; every text contains the empty one.
inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// Converts each character with the global locale.
void toLowerCase(std::string& text);
std::string lowerCased(std::string text);

/// `text` without white space, as the global locale has it, at both ends.
std::string_view trimmed(std::string_view text);

}  // namespace diagsrunner

#include "runner/Text.h"

namespace diagsrunner {

std::string lowerCasedAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    }
  }
  return text;
}

std::string_view CharacterRules::trimmed(std::string_view text) const {
  const auto isSpace = [&](char c) { return m_rules.is(std::ctype_base::space, c); };
  while (!text.empty() && isSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::string lowerCased(std::string text) {
  CharacterRules().toLowerCase(text);
  return text;
}

}  // namespace diagsrunner

#pragma once

#include <locale>
#include <string>
#include <string_view>

namespace diagsrunner {

/// Case-sensitive substring search; every text contains the empty one.
inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// `text` with the letters A to Z converted, whatever the locale: for the words of a file format,
/// which must not change with the language of the host.
std::string lowerCasedAscii(std::string text);

/// How the global locale classifies characters. Looking that up is dear: what handles many texts
/// keeps one of these.
class CharacterRules {
 public:
  /// The rules of the moment; a later change of the global locale is not seen.
  CharacterRules() : m_rules(std::use_facet<std::ctype<char>>(m_locale)) {}
  CharacterRules(const CharacterRules&) = delete;
  CharacterRules& operator=(const CharacterRules&) = delete;

  /// Converts each character.
  void toLowerCase(std::string& text) const {
    m_rules.tolower(text.data(), text.data() + text.size());
  }

  /// `text` without white space at both ends.
  std::string_view trimmed(std::string_view text) const;

 private:
  const std::locale m_locale;
  const std::ctype<char>& m_rules;
};

/// `text` with each character converted by the global locale.
std::string lowerCased(std::string text);

}  // namespace diagsrunner

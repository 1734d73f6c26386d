#include "runner/Text.h"

#include <locale>
#include <utility>

namespace diagsrunner {

void toLowerCase(std::string& text) {
  const std::locale locale;
  std::use_facet<std::ctype<char>>(locale).tolower(text.data(), text.data() + text.size());
}

std::string lowerCased(std::string text) {
  toLowerCase(text);
  return text;
}

std::string_view trimmed(std::string_view text) {
  const std::locale locale;
  const auto& classify = std::use_facet<std::ctype<char>>(locale);
  const auto isSpace = [&](char c) { return classify.is(std::ctype_base::space, c); };
  while (!text.empty() && isSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace diagsrunner

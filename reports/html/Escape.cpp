#include "reports/html/Escape.h"

#include "text/SafeText.h"

namespace reports::html {
namespace {

std::string withEntities(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

}  // namespace

std::string escaped(std::string_view text) { return withEntities(text::visible(text)); }

std::string escapedLines(std::string_view text) {
  return withEntities(text::setApart(text, std::string()));
}

std::string shortened(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return std::string(text);
  std::size_t end = bytes;
  for (int i = 0; i < 3 && end > 0 && continuesCharacter(text[end]); ++i) --end;
  return std::string(text.substr(0, end)) + " \xE2\x80\xA6 (" + std::to_string(text.size() - end) +
         " more bytes)";
}

}  // namespace reports::html

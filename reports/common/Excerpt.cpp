#include "reports/common/Excerpt.h"

#include "text/SafeText.h"

namespace reports {
namespace {

constexpr std::size_t kLongestExcerpt = 200;

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80; }

}  // namespace

std::string excerpt(std::string_view text) {
  if (text.size() <= kLongestExcerpt) return text::visible(text);
  std::size_t end = kLongestExcerpt;
  while (end > kLongestExcerpt - 4 && continuesCharacter(text[end])) --end;
  return text::visible(text.substr(0, end)) + "...";
}

}  // namespace reports

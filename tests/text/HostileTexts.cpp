#include "tests/text/HostileTexts.h"

namespace text {

const std::vector<HostileText>& hostileTexts() {
  static const std::vector<HostileText> texts = {
      {"Empty", ""},
      {"Quotes", R"("'\)"},
      {"AllControls", std::string("\0\x01\x02\x07\x08\t\n\x0b\x0c\r\x0e\x1b\x1f\x7f", 14)},
      {"Escape", "\x1b]0;title\x07\x1b[2J\x1b[31m"},
      {"C1",
       "\xC2\x9B"
       "31m"},
      {"Markup", "<script>alert(1)</script>&amp;&#x41;<!-- -->"},
      {"Cdata", "]]><![CDATA[]]>"},
      {"Lines",
       "a\r\nb\nc\rd\xE2\x80\xA8"
       "e"},
      {"NoUtf8", "\xFF\xFE\xC3\x28\xE2\x82"},
      {"Overlong", "\xC0\xAF\xE0\x80\xAF"},
      {"Surrogate", "\xED\xA0\x80"},
      {"NoCharacter", "\xEF\xBF\xBE\xEF\xBF\xBF"},
      {"Direction", "\xE2\x80\xAEgpj.exe"},
      {"BeyondTheFirstPlane", "\xF0\x9F\x92\xA5\xF3\xA0\x81\x81"},
      {"ALineOfAStream", R"({"sequence":0,"time":"1970-01-01T00:00:00Z"})"},
  };
  return texts;
}

}  // namespace text

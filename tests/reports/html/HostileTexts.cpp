#include "tests/reports/html/HostileTexts.h"

namespace reports::samples {

using std::string_literals::operator""s;

const std::vector<HostileText>& hostileTexts() {
  static const std::vector<HostileText> texts = {
      {"a script", "<script>document.title='x';throw 'ran'</script>"},
      {"an image with a handler", "<img src=x onerror=\"throw 'ran'\">"},
      {"the end of the style", "</style><script>throw 'ran'</script>"},
      {"the end of an attribute", "\" onload=\"throw 'ran'\" x=\"' onload='throw 1' y='"},
      {"the end of a title", "</title></svg><svg onload=\"throw 'ran'\">"},
      {"a comment", "<!-- <![CDATA[ ]]> --> -->"},
      {"a link", "<a href=\"javascript:throw 'ran'\">click</a>"},
      {"another base", "<base href=\"http://127.0.0.1:9/\"><link rel=stylesheet href=x>"},
      {"entities", "&lt;script&gt; &amp; &#60; &nbsp"},
      {"control characters", "a\0b\x07\x1b[2J\x1b]0;x\x07\r\n\tc\x7f"s},
      {"turned writing", "abc\u202egnp.exe\u2066x"},
      {"no UTF-8", "\xff\xfe<b>\xc0\x80\xed\xa0\x80\xf5"},
      {"a cut character before markup", "\xe2<script>throw 'ran'</script>"},
  };
  return texts;
}

}  // namespace reports::samples

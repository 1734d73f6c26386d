#include <gtest/gtest.h>

#include "reports/junit/XmlText.h"

namespace reports {
namespace {

#define REPLACED "\xEF\xBF\xBD"

struct XmlRow {
  const char* name;
  std::string text;
  const char* content;
  const char* attribute;
};

class XmlTexts : public testing::TestWithParam<XmlRow> {};

TEST_P(XmlTexts, AreEscaped) {
  EXPECT_EQ(xmlText(GetParam().text), GetParam().content);
  EXPECT_EQ(xmlAttribute("a", GetParam().text), std::string(" a=\"") + GetParam().attribute + "\"");
}

const XmlRow kXmlRows[] = {
    {"Plain", "a'b", "a'b", "a'b"},
    {"Markup", "<a b=\"c\">&", "&lt;a b=&quot;c&quot;&gt;&amp;", "&lt;a b=&quot;c&quot;&gt;&amp;"},
    {"TheEndOfCdata", "]]>", "]]&gt;", "]]&gt;"},
    {"Breaks", "a\n\tb\r", "a\n\tb&#13;", "a&#10;&#9;b&#13;"},
    {"Controls", std::string("\0\x08\x0b\x0c\x1b\x1f", 6),
     REPLACED REPLACED REPLACED REPLACED REPLACED REPLACED,
     REPLACED REPLACED REPLACED REPLACED REPLACED REPLACED},
    {"C1AndDelete", "\x7f\xC2\x9B", REPLACED REPLACED, REPLACED REPLACED},
    {"NoCharacters", "\xEF\xBF\xBE\xEF\xBF\xBF", REPLACED REPLACED, REPLACED REPLACED},
    {"ALoneSurrogate", "\xED\xA0\x80", REPLACED REPLACED REPLACED, REPLACED REPLACED REPLACED},
    {"OtherWritings", "\xE6\xB8\xAC\xF0\x9F\x92\xA5", "\xE6\xB8\xAC\xF0\x9F\x92\xA5",
     "\xE6\xB8\xAC\xF0\x9F\x92\xA5"},
};
INSTANTIATE_TEST_SUITE_P(All, XmlTexts, testing::ValuesIn(kXmlRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LongText, KeepsAllThatIsShort) {
  LongText text;
  EXPECT_TRUE(text.isEmpty());
  text.addLine("a");
  text.addLine("");
  text.addLine("b");
  EXPECT_EQ(text.text(), "a\n\nb\n");
}

TEST(LongText, KeepsBeginningAndEndOfWhatIsLongAndCountsTheRest) {
  LongText text;
  std::size_t size = 0;
  for (int line = 0; line < 100'000; ++line) {
    text.addLine(std::to_string(line));
    size += std::to_string(line).size() + 1;
  }
  const std::string kept = text.text();
  EXPECT_LT(kept.size(), 4 * LongText::kHalf);
  EXPECT_EQ(kept.substr(0, 6), "0\n1\n2\n");
  EXPECT_EQ(kept.substr(kept.size() - 6), "99999\n");
  const std::size_t note = kept.find('[');
  const std::string rest = kept.substr(note, kept.find('\n', note) + 1 - note);
  const std::size_t missing = size - (kept.size() - rest.size());
  EXPECT_EQ(rest, "[" + std::to_string(missing) + " bytes are left out]\n");
}

TEST(LongText, OneEndlessLineTakesNoMoreRoom) {
  LongText text;
  for (int i = 0; i < 10; ++i) text.addLine(std::string(1'000'000, 'x'));
  EXPECT_LT(text.text().size(), 4 * LongText::kHalf);
}

}  // namespace
}  // namespace reports

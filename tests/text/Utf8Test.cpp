#include <gtest/gtest.h>

#include "text/Utf8.h"

namespace text {
namespace {

struct Utf8Row {
  const char* name;
  const char* text;
  std::uint32_t code;
  std::size_t length;
};

class Characters : public testing::TestWithParam<Utf8Row> {};

TEST_P(Characters, AreReadOneByOne) {
  const Character character = firstCharacter(GetParam().text);
  EXPECT_EQ(character.code, GetParam().code);
  EXPECT_EQ(character.length, GetParam().length);
}

const Utf8Row kUtf8Rows[] = {
    {"Ascii", "ab", 'a', 1},
    {"TwoBytes", "\xC3\xA4x", 0xE4, 2},
    {"ThreeBytes", "\xE6\xB8\xAC", 0x6E2C, 3},
    {"FourBytes", "\xF0\x9F\x92\xA5", 0x1F4A5, 4},
    {"TheLast", "\xF4\x8F\xBF\xBF", 0x10FFFF, 4},
    {"BeyondTheLast", "\xF4\x90\x80\x80", kReplacement, 1},
    {"ACutOne", "\xE6\xB8", kReplacement, 2},
    {"ALongerCutOne", "\xF0\x9F\x92", kReplacement, 3},
    {"OneThatBreaksOff", "\xE6\xB8x", kReplacement, 2},
    {"OneThatBreaksOffWithAnother", "\xF0\x9F\xC3\xA4", kReplacement, 2},
    {"AContinuation", "\x80", kReplacement, 1},
    {"AnOverlongSlash", "\xC0\xAF", kReplacement, 1},
    {"AnOverlongOfThree", "\xE0\x9F\xBF", kReplacement, 1},
    {"AnOverlongOfFour", "\xF0\x8F\xBF\xBF", kReplacement, 1},
    {"ASurrogate", "\xED\xA0\x80", kReplacement, 1},
    {"TheLastBeforeSurrogates", "\xED\x9F\xBF", 0xD7FF, 3},
};
INSTANTIATE_TEST_SUITE_P(All, Characters, testing::ValuesIn(kUtf8Rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Utf8, EveryCharacterIsWrittenAsItIsRead) {
  for (std::uint32_t code = 0; code <= 0x10FFFF; ++code) {
    if (code >= 0xD800 && code <= 0xDFFF) continue;
    std::string text;
    appendUtf8(text, code);
    const Character character = firstCharacter(text);
    if (character.code != code || character.length != text.size()) FAIL() << code;
  }
}

TEST(Utf8, BytesThatAreNoneAreReplaced) {
  EXPECT_EQ(asUtf8("a\xFFz\xE2\x82"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
}

}  // namespace
}  // namespace text

#include <gtest/gtest.h>

#include <algorithm>
#include <locale>

#include "runner/Text.h"
#include "tests/support/ForeignCapital.h"

namespace diagsrunner {
namespace {

/// Classifies as no real locale does: "#" is the capital of "+", and "_" the only white space.
class OddCharacters : public std::ctype<char> {
 public:
  OddCharacters() : std::ctype<char>(table()) {}

 protected:
  char do_tolower(char c) const override { return c == '#' ? '+' : c; }
  const char* do_tolower(char* first, const char* last) const override {
    std::replace(first, const_cast<char*>(last), '#', '+');
    return last;
  }

 private:
  static const mask* table() {
    static mask masks[table_size] = {};
    masks[static_cast<unsigned char>('_')] = space;
    return masks;
  }
};

/// Makes the odd locale the global one for a while.
class OddLocale {
 public:
  OddLocale() : m_former(std::locale::global(std::locale(std::locale(), new OddCharacters))) {}
  OddLocale(const OddLocale&) = delete;
  OddLocale& operator=(const OddLocale&) = delete;
  ~OddLocale() { std::locale::global(m_former); }

 private:
  const std::locale m_former;
};

TEST(Contains, IsACaseSensitiveSubstringSearch) {
  EXPECT_TRUE(contains("zel:memory test", "memory"));
  EXPECT_TRUE(contains("memory", "memory"));
  EXPECT_FALSE(contains("zel:memory test", "Memory"));
  EXPECT_FALSE(contains("memory", "memory test"));
}

TEST(Contains, FindsTheEmptyTextEverywhere) {
  EXPECT_TRUE(contains("memory", ""));
  EXPECT_TRUE(contains("", ""));
  EXPECT_FALSE(contains("", "m"));
}

TEST(LowerCased, ConvertsLettersAlone) {
  EXPECT_EQ(lowerCased("ABE1-xX_9\t\xC4"), "abe1-xx_9\t\xC4");
  EXPECT_EQ(lowerCased(""), "");
  EXPECT_EQ(lowerCased(std::string("A\0B", 3)), std::string("a\0b", 3));
}

TEST(LowerCasedAscii, ConvertsTheLettersOfAsciiInEveryLocale) {
  const support::ForeignCapital turkish('I');
  EXPECT_EQ(lowerCasedAscii("@AIZ[`aiz{\xC4\xDD"), "@aiz[`aiz{\xC4\xDD");
  EXPECT_EQ(lowerCasedAscii(""), "");
  EXPECT_EQ(lowerCased("DISK"), "d\xFDsk");
}

TEST(CharacterRules, TrimDropsWhiteSpaceAtBothEnds) {
  const CharacterRules rules;
  EXPECT_EQ(rules.trimmed(" \t\r\n\v\fa b \n"), "a b");
  EXPECT_EQ(rules.trimmed("a"), "a");
  EXPECT_EQ(rules.trimmed(" \n "), "");
  EXPECT_EQ(rules.trimmed(""), "");
}

// Catches letters and blanks that are told apart by their codes.
TEST(CharacterRules, AreThoseOfTheGlobalLocale) {
  const OddLocale odd;
  EXPECT_EQ(lowerCased("A#b"), "A+b");
  EXPECT_EQ(CharacterRules().trimmed("_ a_b _"), " a_b ");
}

TEST(CharacterRules, LowerCaseConvertsInPlace) {
  const CharacterRules rules;
  std::string text = "VOR Test_1";
  rules.toLowerCase(text);
  EXPECT_EQ(text, "vor test_1");
}

}  // namespace
}  // namespace diagsrunner

#include <gtest/gtest.h>

#include "runner/Text.h"

namespace diagsrunner {
namespace {

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

TEST(CharacterRules, TrimDropsWhiteSpaceAtBothEnds) {
  const CharacterRules rules;
  EXPECT_EQ(rules.trimmed(" \t\r\n\v\fa b \n"), "a b");
  EXPECT_EQ(rules.trimmed("a"), "a");
  EXPECT_EQ(rules.trimmed(" \n "), "");
  EXPECT_EQ(rules.trimmed(""), "");
}

TEST(CharacterRules, LowerCaseConvertsInPlace) {
  const CharacterRules rules;
  std::string text = "VOR Test_1";
  rules.toLowerCase(text);
  EXPECT_EQ(text, "vor test_1");
}

}  // namespace
}  // namespace diagsrunner

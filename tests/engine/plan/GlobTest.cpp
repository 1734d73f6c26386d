#include <gtest/gtest.h>

#include <string>

#include "engine/plan/Glob.h"

namespace engine {
namespace {

struct GlobRow {
  const char* pattern;
  const char* text;
  bool isMatch;
};

const GlobRow kGlobRows[] = {
    {"", "", true},
    {"", "a", false},
    {"abc", "abc", true},
    {"abc", "abd", false},
    {"abc", "ab", false},
    {"ab", "abc", false},
    {"ABC", "abc", false},
    {"*", "", true},
    {"*", "anything", true},
    {"**", "", true},
    {"a*", "a", true},
    {"a*c", "abbbc", true},
    {"a*c", "abbb", false},
    {"*,mem0,*", "Memory Test,mem0,System Memory", true},
    {"*,mem0,*", "Memory Test,mem1,System Memory", false},
    {"*a*b*c*", "xaxbxcx", true},
    {"*a*b*c*", "xaxcxbx", false},
    // The star before the last keeps what it has.
    {"a*ab*b", "aaabab", true},
    {"*ab", "aab", true},
    {"?", "", false},
    {"?", "a", true},
    {"a?c", "abc", true},
    {"a?c", "ac", false},
    {"??", "a", false},
    {"?", "\xC3\xA9", true},
    {"?", "\xE2\x82\xAC", true},
    {"?", "\xF0\x9F\x98\x80", true},
    {"??", "\xC3\xA9", false},
    // No UTF-8: a sign each.
    {"??", "\xC3\xC3", true},
    {"?", "\xE2\x82", false},
    {"[abc]", "b", true},
    {"[abc]", "d", false},
    {"[abc]", "", false},
    {"[a-c]x", "bx", true},
    {"[a-c]", "d", false},
    {"[c-a]", "b", false},
    {"[!a-c]", "d", true},
    {"[!a-c]", "b", false},
    {"[!a]", "", false},
    {"[]]", "]", true},
    {"[!]]", "]", false},
    {"[!]]", "a", true},
    {"[a-]", "-", true},
    {"[a-]", "b", false},
    {"[-a]", "-", true},
    {"[*]", "*", true},
    {"[*]", "a", false},
    {"[?]", "?", true},
    {"[[]", "[", true},
    {"[\xC3\xA0-\xC3\xAF]", "\xC3\xA9", true},
    {"[\xC3\xA0-\xC3\xAF]", "e", false},
    {"a[", "a[", true},
    {"a[b", "a[b", true},
    {"a[b", "ab", false},
    {"[", "[", true},
    {"[!", "[!", true},
    {"*[0-9]", "cpu12", true},
    {"cpu[0-9]", "cpu12", false},
    {"a\\*", "a\\b", true},
    {"a\\*", "a*", false},
};

TEST(Glob, FitsTheWholeText) {
  for (const GlobRow& row : kGlobRows) {
    EXPECT_EQ(matchesGlob(row.pattern, row.text), row.isMatch) << row.pattern << " / " << row.text;
  }
}

// Catches a matcher that tries every way to divide the text among the stars.
TEST(Glob, ManyStarsTakeNoTime) {
  std::string pattern;
  for (int i = 0; i < 1'000; ++i) pattern += "a*";
  EXPECT_FALSE(matchesGlob(pattern + "b", std::string(5'000, 'a')));
}

TEST(Glob, HasASignOfPatterns) {
  EXPECT_TRUE(isGlob("a*"));
  EXPECT_TRUE(isGlob("?"));
  EXPECT_TRUE(isGlob("[a]"));
  EXPECT_FALSE(isGlob("Memory Test,mem0,System Memory]"));
  EXPECT_FALSE(isGlob(""));
}

}  // namespace
}  // namespace engine

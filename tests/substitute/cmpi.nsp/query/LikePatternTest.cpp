#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/query/LikePattern.h"
#include "substitute/cmpi.nsp/query/QueryError.h"

namespace cmpinsp::query {
namespace {

struct Row {
  const char* pattern;
  const char* text;
  bool matches;
};

constexpr Row kRows[] = {
    {"", "", true},
    {"", "a", false},
    {"abc", "abc", true},
    {"abc", "ABC", false},
    {"abc", "abcd", false},
    {"abc", "ab", false},
    {"%", "", true},
    {"%", "anything", true},
    {"a%", "abc", true},
    {"%c", "abc", true},
    {"%b%", "abc", true},
    {"%x%", "abc", false},
    {"a%c%e", "abcde", true},
    {"%ab", "aab", true},
    {"%ab%ab", "abxab", true},
    {"%ab%ab", "abab", true},
    {"%ab%ab", "abb", false},
    {"a%%b", "ab", true},
    {"_", "a", true},
    {"_", "", false},
    {"_", "ab", false},
    {"_", "\xC3\xA4", true},
    {"a_c",
     "a\xF0\x9F\x98\x80"
     "c",
     true},
    {"__", "\xC3\xA4", false},
    {"_", "\xC3", true},
    {"__", "\xC3(", true},
    {"[abc]", "b", true},
    {"[abc]", "d", false},
    {"[a-c]x", "bx", true},
    {"[a-c]x", "dx", false},
    {"[^a-c]", "d", true},
    {"[^a-c]", "b", false},
    {"[a-]", "-", true},
    {"[]]", "]", true},
    {"[\xC3\xA0-\xC3\xBF]", "\xC3\xA4", true},
    {"[%_]", "%", true},
    {"[%_]", "x", false},
    {"50\\%", "50%", true},
    {"50\\%", "50x", false},
    {"a\\_b", "a_b", true},
    {"a\\_b", "axb", false},
    {"\\[a]", "[a]", true},
    {"a\\\\b", "a\\b", true},
    {"a\\", "a\\", true},
    {"[\\]]", "]", true},
};

TEST(LikePattern, MatchesWholeTexts) {
  for (const Row& row : kRows) {
    EXPECT_EQ(LikePattern::parse(row.pattern).matches(row.text), row.matches)
        << row.pattern << " against " << row.text;
  }
}

TEST(LikePattern, RefusesAnUnfinishedSet) {
  for (const char* pattern : {"[", "[a", "[^", "[a-", "[\\", "[]", "[z-a]"}) {
    EXPECT_THROW(LikePattern::parse(pattern), QueryError) << pattern;
  }
}

// Catches a matcher that tries each "%" anew for each end of the one before it.
TEST(LikePattern, ManyRunsTakeNoTimeToSpeakOf) {
  std::string pattern;
  for (int i = 0; i < 50; ++i) pattern += "%a";
  pattern += "%b";
  EXPECT_FALSE(LikePattern::parse(pattern).matches(std::string(5000, 'a')));
}

}  // namespace
}  // namespace cmpinsp::query

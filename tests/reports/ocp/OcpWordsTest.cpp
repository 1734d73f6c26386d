#include <gtest/gtest.h>

#include "reports/ocp/OcpWords.h"

namespace reports {
namespace {

TEST(OcpWords, ALabelIsShortAndCountable) {
  EXPECT_EQ(labelOf("DIAGS: Memory Test"), "diags-memory-test");
  EXPECT_EQ(labelOf(" --A\x1b[1m?"), "a-1m");
  EXPECT_EQ(labelOf(""), "test");
  EXPECT_EQ(labelOf("\xE6\xB8\xAC"), "test");
  EXPECT_EQ(labelOf(std::string(1'000, 'x')), std::string(80, 'x'));
}

TEST(OcpWords, OnlyPairsThatThereAreEndARun) {
  using engine::Outcome;
  const auto pairOf = [](Outcome outcome) {
    return std::string(endOf(outcome).status) + "+" + endOf(outcome).result;
  };
  EXPECT_EQ(pairOf(Outcome::kPassed), "COMPLETE+PASS");
  EXPECT_EQ(pairOf(Outcome::kWarned), "COMPLETE+PASS");
  EXPECT_EQ(pairOf(Outcome::kFailed), "COMPLETE+FAIL");
  EXPECT_EQ(pairOf(Outcome::kSkipped), "SKIP+NOT_APPLICABLE");
  for (const Outcome outcome : {Outcome::kAborted, Outcome::kIncomplete, Outcome::kBroken}) {
    EXPECT_EQ(pairOf(outcome), "ERROR+NOT_APPLICABLE");
  }
}

TEST(OcpWords, WordsAreQuotedForAShell) {
  EXPECT_EQ(shellWords({"diags", "--set", "a=5", "a b", "", "it's", "$x"}),
            R"(diags --set a=5 'a b' '' 'it'\''s' '$x')");
}

}  // namespace
}  // namespace reports

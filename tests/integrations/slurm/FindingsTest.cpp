#include <gtest/gtest.h>

#include "integrations/slurm/Findings.h"

namespace slurm {
namespace {

const char* const kStart =
    R"({"sequence":1,"testId":1,"test":{"name":"T,d,e","service":"T","device":"d","element":"e","repetition":1}})";

Findings from(std::initializer_list<const char*> lines) {
  Findings findings;
  for (const char* const line : lines) findings.take(line);
  return findings;
}

TEST(SlurmFindings, KeepWhatAFailedTestSaid) {
  const Findings findings = from(
      {kStart, R"({"testId":1,"measurement":{"name":"Errors","value":3}})",
       R"({"testId":1,"diagnosis":{"verdict":"fail","text":"bad","part":"P","actions":["a"]}})",
       R"({"testId":1,"end":{"outcome":"failed","seconds":1,"remark":"r","record":"R"}})"});
  ASSERT_EQ(findings.all().size(), 1U);
  const Finding& found = findings.all().front();
  EXPECT_TRUE(found.isFailure);
  EXPECT_EQ(found.errors, 3U);
  ASSERT_EQ(found.diagnoses.size(), 1U);
  EXPECT_EQ(found.diagnoses.front().part, "P");
  EXPECT_EQ(found.record, "R");
}

TEST(SlurmFindings, CountOutcomesByWhatTheyMean) {
  const Findings findings = from({kStart, R"({"testId":1,"end":{"outcome":"passed","seconds":1}})",
                                  R"({"testId":2,"end":{"outcome":"aborted","seconds":1}})",
                                  R"({"testId":3,"end":{"outcome":"skipped","seconds":0}})",
                                  R"({"testId":4,"end":{"outcome":"incomplete","seconds":0}})",
                                  R"({"testId":5,"end":{"outcome":"broken","seconds":0}})"});
  EXPECT_EQ(findings.passed(), 1U);
  EXPECT_EQ(findings.cut(), 2U);
  EXPECT_EQ(findings.undecided(), 2U);
  EXPECT_FALSE(findings.isWhole());
}

TEST(SlurmFindings, AreWholeWithTheEndOfTheRun) {
  EXPECT_TRUE(from({R"({"end":{"outcome":"passed","seconds":1}})"}).isWhole());
}

TEST(SlurmFindings, ATestWithoutAnEndSaysNothing) {
  EXPECT_TRUE(
      from({kStart, R"({"testId":1,"diagnosis":{"verdict":"fail","text":"bad"}})"}).all().empty());
}

class NoSlurmEvents : public testing::TestWithParam<const char*> {};

TEST_P(NoSlurmEvents, ArePassedOver) {
  const Findings findings = from({GetParam()});
  EXPECT_TRUE(findings.all().empty());
  EXPECT_FALSE(findings.isWhole());
}

INSTANTIATE_TEST_SUITE_P(All, NoSlurmEvents,
                         testing::Values("", "{", "[1]", "7", "\"end\"", R"({"end":3})",
                                         R"({"testId":"x","end":[]})", "\xff\xfe",
                                         R"({"testId":-1,"measurement":{"name":"Errors"}})"));

}  // namespace
}  // namespace slurm

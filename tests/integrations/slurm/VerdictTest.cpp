#include <gtest/gtest.h>

#include "integrations/slurm/Check.h"
#include "integrations/slurm/Diagnostics.h"

namespace slurm {
namespace {

const char* const kEnd = R"({"end":{"outcome":"passed","seconds":1}})";
const char* const kPassed = R"({"testId":1,"end":{"outcome":"passed","seconds":1}})";
const char* const kAborted = R"({"testId":2,"end":{"outcome":"aborted","seconds":1}})";
const char* const kBroken = R"({"testId":3,"end":{"outcome":"broken","seconds":1}})";
const char* const kTest = R"({"testId":9,"test":{"service":"T","device":"d"}})";
const char* const kFailed = R"({"testId":9,"end":{"outcome":"failed","seconds":1}})";
const char* const kWarned = R"({"testId":9,"end":{"outcome":"warned","seconds":1}})";

struct VerdictRow {
  const char* name;
  std::vector<const char*> events;
  ChildResult result;
  Verdict verdict;
  const char* text;
};

ChildResult exited(int status) { return {ChildEnd::kExited, status, {}}; }

class SlurmVerdicts : public testing::TestWithParam<VerdictRow> {};

TEST_P(SlurmVerdicts, RestOnWhatTestsSaid) {
  Findings findings;
  for (const char* const event : GetParam().events) findings.take(event);
  const Answer answer = answerFrom(findings, GetParam().result);
  EXPECT_EQ(nameOf(answer.verdict), nameOf(GetParam().verdict));
  EXPECT_EQ(answer.text, GetParam().text);
}

const VerdictRow kVerdictRows[] = {
    {"Sound", {kPassed, kEnd}, exited(0), Verdict::kSound, "1 test passed, 0 had no time"},
    {"Warned", {kTest, kWarned, kEnd}, exited(0), Verdict::kWarned, "d: T warns"},
    {"Cut", {kPassed, kAborted, kEnd}, exited(3), Verdict::kCut, "1 test passed, 1 had no time"},
    {"Broken",
     {kPassed, kBroken, kEnd},
     exited(3),
     Verdict::kUnfinished,
     "1 test ended without a verdict"},
    {"Faulty", {kTest, kFailed, kEnd}, exited(1), Verdict::kFaulty, "d: T failed"},
    {"FaultyAndKilled",
     {kTest, kFailed},
     {ChildEnd::kTimedOut, 9, {}},
     Verdict::kFaulty,
     "d: T failed"},
    {"KilledHalfWay",
     {kPassed},
     {ChildEnd::kTimedOut, 9, {}},
     Verdict::kUnfinished,
     "diags did not come to an end in its time"},
    {"Crashed",
     {kPassed},
     {ChildEnd::kSignalled, 11, {}},
     Verdict::kUnfinished,
     "diags was ended by signal 11"},
    {"NoInstallation", {}, exited(5), Verdict::kUnfinished, "diags ended with status 5"},
    {"NothingToRun", {}, exited(4), Verdict::kUnfinished, "diags ended with status 4"},
    {"NotThere",
     {},
     {ChildEnd::kNotStarted, 2, "No such file or directory"},
     Verdict::kUnfinished,
     "diags did not start: No such file or directory"},
    {"CutOffWithoutAnEnd",
     {kPassed, kAborted},
     exited(3),
     Verdict::kUnfinished,
     "diags ended with status 3"},
};
INSTANTIATE_TEST_SUITE_P(All, SlurmVerdicts, testing::ValuesIn(kVerdictRows),
                         [](const auto& row) { return row.param.name; });

TEST(SlurmStatus, OfAPrologIsZeroUnlessTheNodeIsFaulty) {
  for (const Verb verb : {Verb::kProlog, Verb::kEpilog}) {
    EXPECT_EQ(statusFor(verb, Status::kFaulty), 1);
    EXPECT_EQ(statusFor(verb, Status::kUsage), 0);
    EXPECT_EQ(statusFor(verb, Status::kUnfinished), 0);
  }
  EXPECT_EQ(statusFor(Verb::kHealth, Status::kUnfinished), 3);
}

}  // namespace
}  // namespace slurm

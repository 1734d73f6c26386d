#include <gtest/gtest.h>

#include <algorithm>

#include "fleet/Fleet.h"
#include "tests/fleet/Streams.h"

namespace fleet {
namespace {

using fleet_test::Folder;
using fleet_test::Stream;

class FleetAsked : public testing::Test {
 protected:
  Answer ask(unsigned threads = 2) {
    Question question;
    question.names = {m_folder.name()};
    question.expected = m_expected;
    question.threads = threads;
    question.now = engine::Time(std::chrono::hours(24 * 20'780));  // in November 2026
    return askFleet(question);
  }
  void add(const std::string& file, const Stream& stream) { m_folder.write(file, stream.text()); }

  static bool complains(const Answer& answer, const std::string& text) {
    return std::any_of(
        answer.complaints.begin(), answer.complaints.end(), [&](const Complaint& complaint) {
          return (complaint.file + ": " + complaint.text).find(text) != std::string::npos;
        });
  }
  static Verdict verdictOf(const Answer& answer, const std::string& machine,
                           const std::string& test) {
    for (const Machine& one : answer.machines) {
      for (std::size_t i = 0; i < answer.tests.size(); ++i) {
        if (one.name == machine && answer.tests[i].name == test) return one.verdicts[i];
      }
    }
    ADD_FAILURE() << "no " << machine << " with " << test;
    return Verdict::kNone;
  }

  Folder m_folder{testing::UnitTest::GetInstance()->current_test_info()->name()};
  std::optional<std::vector<std::string>> m_expected;
};

TEST_F(FleetAsked, MachinesAndTestsAreSorted) {
  add("b.jsonl", Stream().machine("b").test("y").test("x", "FAIL").finish("FAIL"));
  add("deep/er/a.JSONL", Stream().machine("a").test("x").finish());
  add("notes.txt", Stream().machine("c").test("x").finish());
  const Answer answer = ask();
  ASSERT_EQ(answer.machines.size(), 2U);
  EXPECT_EQ(answer.machines[0].name, "a");
  EXPECT_EQ(answer.machines[1].verdict, Verdict::kFailed);
  ASSERT_EQ(answer.tests.size(), 2U);
  EXPECT_EQ(answer.tests[0].name, "x");
  EXPECT_EQ(verdictOf(answer, "a", "y"), Verdict::kNone);
  EXPECT_TRUE(answer.complaints.empty());
}

TEST_F(FleetAsked, TheLatestResultOfEachTestCounts) {
  add("1.jsonl", Stream("2026-11-20T12:00:00Z").machine("n", "S").test("x").finish());
  add("2.jsonl", Stream("2026-11-20T11:00:00Z")
                     .machine("n", "S")
                     .test("x", "FAIL")
                     .test("y", "FAIL")
                     .finish("FAIL"));
  const Answer answer = ask();
  ASSERT_EQ(answer.machines.size(), 1U);
  EXPECT_EQ(answer.machines[0].streams, 2U);
  EXPECT_EQ(verdictOf(answer, "n", "x"), Verdict::kPassed);
  EXPECT_EQ(verdictOf(answer, "n", "y"), Verdict::kFailed);
  ASSERT_EQ(answer.findings.size(), 1U);
  EXPECT_EQ(answer.tests[answer.findings[0].test].name, "y");
}

TEST_F(FleetAsked, OneNameWithTwoSerialNumbersIsTwoMachinesAndTold) {
  add("1.jsonl", Stream().machine("n", "S1").test("x").finish());
  add("2.jsonl", Stream().machine("n", "S2").test("x").finish());
  const Answer answer = ask();
  EXPECT_EQ(answer.machines.size(), 2U);
  EXPECT_TRUE(complains(answer,
                        "n: 2 machines have this name, and are kept apart by their serial "
                        "numbers: S1, S2"));
}

TEST_F(FleetAsked, AStreamWithoutASerialNumberIsTheOneMachinesOfThatName) {
  add("1.jsonl", Stream().machine("n", "S1").test("x").finish());
  add("2.jsonl", Stream("2026-11-20T11:00:00Z").machine("n").test("y").finish());
  const Answer answer = ask();
  ASSERT_EQ(answer.machines.size(), 1U);
  EXPECT_EQ(answer.machines[0].serial, "S1");
  EXPECT_EQ(verdictOf(answer, "n", "y"), Verdict::kPassed);
}

TEST_F(FleetAsked, ARunThatWasCopiedCountsOnce) {
  add("1.jsonl", Stream().machine("n").test("x").finish());
  add("2.jsonl", Stream().machine("n").test("x").finish());
  const Answer answer = ask();
  EXPECT_EQ(answer.machines[0].streams, 1U);
  EXPECT_TRUE(complains(answer, "2.jsonl: is the same run as "));
  EXPECT_NE(answer.machines[0].source.find("1.jsonl"), std::string::npos);
}

TEST_F(FleetAsked, OfARunAndItsFirstHalfTheWholeCounts) {
  add("1.jsonl", Stream().machine("n").begin("1", "x"));
  add("2.jsonl", Stream().machine("n").test("x").finish());
  EXPECT_EQ(verdictOf(ask(), "n", "x"), Verdict::kPassed);
}

TEST_F(FleetAsked, OfAClockThatIsNotTrustedTheWorstCounts) {
  add("1.jsonl", Stream("1970-01-01T00:00:09Z").machine("n").test("x", "FAIL").finish("FAIL"));
  add("2.jsonl", Stream().machine("n").test("x").finish());
  add("3.jsonl", Stream("2031-01-01T00:00:00Z").machine("m").test("x").finish());
  const Answer answer = ask();
  ASSERT_EQ(answer.machines.size(), 2U);
  EXPECT_EQ(verdictOf(answer, "n", "x"), Verdict::kFailed);
  EXPECT_FALSE(answer.machines[1].isClockTrusted);
  EXPECT_TRUE(complains(answer, "1.jsonl: began at 1970-01-01T00:00:09.000000Z by the clock of n"));
  EXPECT_TRUE(complains(answer, "3.jsonl: began at 2031"));
}

// Catches a machine months in the past that nobody hears of.
TEST_F(FleetAsked, AMachineWhoseClockIsFarFromTheOthersIsTold) {
  for (const char* name : {"a", "b", "c", "d"}) {
    add(std::string(name) + ".jsonl", Stream().machine(name).test("x").finish());
  }
  add("m.jsonl", Stream("2026-02-20T10:00:00Z").machine("m").test("x").finish());
  add("n.jsonl", Stream("2026-11-22T22:00:00Z").machine("n").test("x").finish());
  const Answer answer = ask();
  EXPECT_TRUE(complains(answer,
                        "m.jsonl: began at 2026-02-20T10:00:00.000000Z by the clock of m, 273 days "
                        "before most machines' runs: it is another run than theirs, or the clock "
                        "is wrong"));
  EXPECT_TRUE(complains(answer,
                        "n.jsonl: began at 2026-11-22T22:00:00.000000Z by the clock of n, "
                        "2 days behind most machines' runs"));
  EXPECT_EQ(answer.complaints.size(), 2U);
  EXPECT_TRUE(answer.machines[4].isClockTrusted);
}

TEST_F(FleetAsked, MachinesThatAreTestedOverWeeksHaveNoClockAmiss) {
  for (int day = 1; day <= 9; ++day) {
    const std::string name = std::to_string(day);
    add(name + ".jsonl",
        Stream("2026-11-0" + name + "T10:00:00Z").machine(name).test("x").finish());
  }
  EXPECT_TRUE(ask().complaints.empty());
}

TEST_F(FleetAsked, OfTwoMachinesNobodyKnowsWhoseClockIsWrong) {
  add("1.jsonl", Stream("2026-02-20T10:00:00Z").machine("a").test("x").finish());
  add("2.jsonl", Stream().machine("b").test("x").finish());
  EXPECT_TRUE(ask().complaints.empty());
}

TEST_F(FleetAsked, ARunThatIsStillToComeIsTold) {
  add("1.jsonl", Stream("2026-11-23T03:00:00Z").machine("a").test("x").finish());
  EXPECT_TRUE(complains(ask(),
                        "1.jsonl: began at 2026-11-23T03:00:00.000000Z by the clock of a, "
                        "which is 3 hours ahead of this machine's"));
}

TEST_F(FleetAsked, OfManyClocksThatAreFarOffAFewAreToldAndTheRestCounted) {
  for (int i = 0; i < 80; ++i) {
    const std::string time = i < 30 ? "2026-02-20T10:00:00Z" : "2026-11-20T10:00:00Z";
    const std::string name = "n" + std::to_string(i);
    add(name + ".jsonl", Stream(time).machine(name).test("x").finish());
  }
  const Answer answer = ask();
  EXPECT_EQ(answer.complaints.size(), 21U);
  EXPECT_TRUE(complains(answer, "10 more machines' runs are so far from most by their clocks"));
}

TEST_F(FleetAsked, OfAMachineThatVanishedTheRestIsUnfinished) {
  for (const char* name : {"a", "b", "c"}) {
    add(std::string(name) + ".jsonl", Stream().machine(name).test("x").test("y").finish());
  }
  add("n.jsonl", Stream().machine("n").test("x"));
  const Answer answer = ask();
  EXPECT_EQ(verdictOf(answer, "n", "x"), Verdict::kPassed);
  EXPECT_EQ(verdictOf(answer, "n", "y"), Verdict::kUnfinished);
  ASSERT_EQ(answer.silent.size(), 1U);
  EXPECT_EQ(answer.silent[0].name, "n");
  EXPECT_EQ(answer.silent[0].answered, 1U);
}

TEST_F(FleetAsked, WhoDidNotAnswerIsNamedAndWhoWasNotExpectedTold) {
  m_expected = {{"n1", "n2", "n3.rack", "n4"}};
  add("1.jsonl", Stream().machine("n1.rack").test("x").finish());
  add("3.jsonl", Stream().machine("n3").test("x").finish());
  add("9.jsonl", Stream().machine("n9").test("x").finish());
  const Answer answer = ask();
  ASSERT_EQ(answer.silent.size(), 2U);
  EXPECT_EQ(answer.silent[0].name, "n2");
  EXPECT_EQ(answer.silent[0].machine, kNowhere);
  EXPECT_EQ(answer.silent[1].name, "n4");
  EXPECT_TRUE(complains(answer, "9.jsonl: is of n9, which was not expected"));
}

TEST_F(FleetAsked, TwoFleetsInOneFolderAreTold) {
  add("1.jsonl", Stream().machine("a").test("x").test("y").finish());
  add("2.jsonl", Stream().machine("b").test("y").finish());
  add("3.jsonl", Stream().machine("c").test("z").finish());
  const Answer answer = ask();
  ASSERT_EQ(answer.components.size(), 2U);
  EXPECT_TRUE(complains(answer,
                        "2 fleets, whose machines have no test in common: 2 machines like "
                        "a (2 tests), 1 machine like c (1 test)"));
}

TEST_F(FleetAsked, ABadStreamLeavesTheOthersAsTheyAre) {
  add("1.jsonl", Stream().machine("a").test("x").finish());
  m_folder.write("2.json", "{}\n");
  m_folder.write("3.json", "");
  const Answer answer = ask();
  EXPECT_EQ(answer.machines.size(), 1U);
  EXPECT_EQ(answer.totals.streams, 3U);
  EXPECT_EQ(answer.totals.leftOut, 2U);
  EXPECT_TRUE(complains(answer, "3.json: is empty"));
}

TEST_F(FleetAsked, AMachineWithoutANameHasItsFiles) {
  add("n12.jsonl", Stream().machine("").test("x").finish());
  EXPECT_EQ(ask().machines[0].name, "n12");
}

TEST_F(FleetAsked, ARunThatFailsWithoutAFailingTestIsAFinding) {
  add("1.jsonl", Stream().machine("a").test("x").finish("FAIL"));
  const Answer answer = ask();
  EXPECT_EQ(answer.machines[0].verdict, Verdict::kFailed);
  ASSERT_EQ(answer.findings.size(), 1U);
  EXPECT_EQ(answer.findings[0].test, kNowhere);
}

TEST_F(FleetAsked, AFolderThatIsNotThereIsNamed) {
  Question question;
  question.names = {m_folder.name() + "/none"};
  const Answer answer = askFleet(question);
  EXPECT_TRUE(complains(answer, "no such file or folder"));
  EXPECT_TRUE(answer.machines.empty());
}

/// A slow one among many, and what all of them are called.
TEST_F(FleetAsked, APartThatIsSlowBesideItsPeersStandsOutThoughItPasses) {
  for (int i = 0; i < 40; ++i) {
    Stream stream;
    stream.machine("n" + std::to_string(100 + i), "S" + std::to_string(i)).begin("1", "Read");
    for (int m = 0; m < 6; ++m) {
      const double noise = 1 + 0.01 * ((i * 7 + m * 3) % 11 - 5);
      stream.measurement("1", "m" + std::to_string(m), (i == 17 ? 0.8 : 1.0) * 10 * noise);
    }
    add(std::to_string(i) + ".jsonl", stream.end("1").finish());
  }
  const Answer answer = ask();
  ASSERT_EQ(answer.slow.size(), 1U);
  EXPECT_EQ(answer.machines[answer.slow[0].machine].name, "n117");
  EXPECT_EQ(answer.slow[0].model, "M1");
  EXPECT_EQ(answer.slow[0].measurements, 6U);
  EXPECT_NEAR(answer.slow[0].ratio, 0.8, 0.03);
  EXPECT_EQ(answer.totals.series, 240U);
}

TEST_F(FleetAsked, TheAnswerIsTheSameInAnyNumberOfThreads) {
  for (int i = 0; i < 60; ++i) {
    const std::string name = std::to_string(i % 20);
    Stream stream("2026-11-20T10:00:0" + std::to_string(i / 20) + "Z");
    stream.machine(name).begin("1", "t").measurement("1", "bw", 10 + i % 7).end("1");
    if (i % 7 == 0) stream.test("u", "FAIL");
    add(std::to_string(i) + ".jsonl", stream.finish());
  }
  const Answer one = ask(1);
  const Answer many = ask(8);
  ASSERT_EQ(one.machines.size(), many.machines.size());
  for (std::size_t i = 0; i < one.machines.size(); ++i) {
    EXPECT_EQ(one.machines[i].verdicts, many.machines[i].verdicts);
    EXPECT_EQ(one.machines[i].source, many.machines[i].source);
  }
  EXPECT_EQ(one.findings.size(), many.findings.size());
}

}  // namespace
}  // namespace fleet

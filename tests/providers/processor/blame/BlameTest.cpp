#include <gtest/gtest.h>

#include "providers/processor/blame/Blame.h"
#include "providers/processor/blame/Votes.h"
#include "providers/processor/operations/KnownAnswers.h"
#include "providers/processor/operations/OperationTable.h"
#include "tests/providers/processor/FaultyProcessor.h"

namespace providers {
namespace {

using Cpus = std::vector<unsigned>;

constexpr CpuPlace kBlamed{0, 0, 0};
constexpr CpuPlace kSibling{1, 0, 0};
constexpr CpuPlace kOtherCore{2, 1, 0};
constexpr CpuPlace kSameCoreNumber{4, 0, 1};  // of another package

struct ExtentRow {
  const char* name;
  std::vector<Tried> others;
  Extent extent;
};

TEST(Extent, FollowsFromWhoElseGetsItWrong) {
  for (const ExtentRow& row : {
           ExtentRow{"alone", {}, Extent::Core},
           ExtentRow{"itself", {{kBlamed, true}}, Extent::Core},
           ExtentRow{"right sibling", {{kSibling, false}}, Extent::Thread},
           ExtentRow{"wrong sibling", {{kSibling, true}}, Extent::Core},
           ExtentRow{"other core", {{kOtherCore, false}}, Extent::Core},
           ExtentRow{"sibling and core", {{kSibling, false}, {kOtherCore, true}}, Extent::Package},
           ExtentRow{"core and sibling", {{kOtherCore, true}, {kSibling, true}}, Extent::Package},
           ExtentRow{"right core after wrong sibling",
                     {{kSibling, true}, {kOtherCore, false}},
                     Extent::Core},
           ExtentRow{"other package right", {{kSameCoreNumber, false}}, Extent::Core},
           ExtentRow{
               "other package", {{kOtherCore, true}, {kSameCoreNumber, true}}, Extent::Everywhere},
       })
    EXPECT_EQ(extentOf(kBlamed, row.others), row.extent) << row.name;
}

TEST(Votes, TheMostWin) {
  Votes votes;
  EXPECT_EQ(votes.winner(), nullptr);
  votes.add({1}, 1);
  votes.add({2}, 2);
  ASSERT_NE(votes.winner(), nullptr);
  EXPECT_EQ(*votes.winner(), Words{2});
  votes.add({1}, 1);
  EXPECT_EQ(votes.winner(), nullptr);
  votes.add({1}, 1);
  EXPECT_EQ(*votes.winner(), Words{1});
  EXPECT_EQ(*votes.find(digestOf({2})), Words{2});
  EXPECT_EQ(votes.find(5), nullptr);
}

void addOne(const std::uint64_t* operands, std::uint64_t* results, std::size_t items) {
  for (std::size_t i = 0; i < items; ++i) results[i] = operands[i] + 1;
}

void addOneByOtherMeans(const std::uint64_t* operands, std::uint64_t* results) {
  *results = ~(~*operands - 1);
}

constexpr Operation kAddition{"Addition of one", Unit::Integer, 1, 1, 8, nullptr, addOne,
                              addOneByOtherMeans};
constexpr Operation kLibrary{"Library", Unit::Cache, 1, 1, 8, nullptr, addOne, nullptr};

class BlameTest : public ::testing::Test {
 protected:
  BlameTest() {
    suspicion.cpu = 2;
    suspicion.answeredBy = 5;
    suspicion.operation = kAddition;
    suspicion.seed = 77;
    suspicion.mismatch = {7, 0, answer(7), answer(7) ^ faulty.bit};
  }
  std::uint64_t answer(std::size_t item) {
    Words operands;
    drawOperands(kAddition, 77, operands);
    return operands[item] + 1;
  }
  Verdict judge() {
    return Blame({FaultyProcessor::binder(), &faulty, start, whyNotOn}, places).judge(suspicion);
  }
  /// So many threads can be started, and no more.
  void allowThreads(int most) {
    start = [this, most](std::function<void()> work) {
      if (started++ >= most) throw std::system_error(EAGAIN, std::generic_category());
      return std::thread(std::move(work));
    };
  }
  FaultyProcessor faulty;
  StartThread start = startThread;
  std::function<std::string()> whyNotOn = [] { return std::string(); };
  int started = 0;
  std::vector<CpuPlace> places = FaultyProcessor::places();
  Suspicion suspicion;
};

TEST_F(BlameTest, AThreadIsToldFromItsCore) {
  faulty.cpus = {2};
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.extent, Extent::Thread);
  EXPECT_EQ(verdict.place.cpu, 2U);
  EXPECT_EQ(verdict.place.core, 1U);
  EXPECT_TRUE(verdict.comesBack);
  EXPECT_EQ(verdict.tries, 10U);
  EXPECT_EQ(verdict.wrongAlone, 10U);
  EXPECT_EQ(verdict.wrongUnderLoad, std::nullopt) << "it comes back without";
  EXPECT_EQ(verdict.wrongToo, Cpus{});
  EXPECT_EQ(verdict.right, (Cpus{0, 1, 3, 4, 5, 6, 7}));
}

TEST_F(BlameTest, ACoreIsToldFromItsPackage) {
  faulty.cpus = {2, 3};
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.extent, Extent::Core);
  EXPECT_EQ(verdict.wrongToo, Cpus{3});
}

TEST_F(BlameTest, APackageIsToldFromTheOther) {
  faulty.cpus = {0, 1, 2, 3};
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.extent, Extent::Package);
  EXPECT_EQ(verdict.wrongToo, (Cpus{0, 1, 3}));
}

TEST_F(BlameTest, WhatAllGetWrongIsNoSingleProcessorsFault) {
  faulty.cpus = {0, 1, 2, 3, 4, 5, 6, 7};
  EXPECT_EQ(judge().extent, Extent::Everywhere);
}

TEST_F(BlameTest, AFaultThatDoesNotComeBackIsSaidToBeOne) {
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.place.cpu, 2U);
  EXPECT_FALSE(verdict.comesBack);
  EXPECT_EQ(verdict.wrongAlone, 0U);
  EXPECT_EQ(verdict.mismatch.expected, answer(7));
  EXPECT_EQ(verdict.mismatch.found, answer(7) ^ faulty.bit);
}

TEST_F(BlameTest, AFaultThatWasSeenTwiceComesBack) {
  suspicion.count = 2;
  EXPECT_TRUE(judge().comesBack);
}

TEST_F(BlameTest, AFaultThatIsThereSometimesIsCounted) {
  faulty.cpus = {2};
  faulty.firstCall = 2;
  faulty.lastCall = 4;
  EXPECT_EQ(judge().wrongAlone, 3U);
}

TEST_F(BlameTest, AnotherThreadThatIsWrongOnceIsWrong) {
  faulty.cpus = {2, 3};
  faulty.lastCall = 10;  // ten on one of them, one on the other
  EXPECT_EQ(judge().wrongToo, Cpus{3});
  EXPECT_EQ(judge().extent, Extent::Thread) << "now both are over it";
}

TEST_F(BlameTest, AFaultThatComesUnderLoadOnlyComesBack) {
  faulty.cpus = {2};
  faulty.firstCall = 12;  // the ten alone are past
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.wrongAlone, 0U);
  EXPECT_EQ(verdict.wrongUnderLoad, 8U);
  EXPECT_TRUE(verdict.comesBack);
}

TEST_F(BlameTest, WhoMadeAWrongAnswerIsToBlame) {
  suspicion.mismatch = {7, 0, answer(7) ^ 1, answer(7)};
  suspicion.count = 100;
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.place.cpu, 5U);
  EXPECT_EQ(verdict.place.package, 1U);
  EXPECT_FALSE(verdict.comesBack) << "all others have only met the same answer again";
  EXPECT_EQ(verdict.mismatch.expected, answer(7));
  EXPECT_EQ(verdict.mismatch.found, answer(7) ^ 1);
}

TEST_F(BlameTest, WithoutOtherMeansTheMostAreBelieved) {
  suspicion.operation = kLibrary;
  faulty.cpus = {5};
  suspicion.mismatch = {7, 0, answer(7) ^ faulty.bit, answer(7)};
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.place.cpu, 5U);
  EXPECT_TRUE(verdict.comesBack);
  EXPECT_EQ(verdict.extent, Extent::Thread);
}

TEST_F(BlameTest, WithoutOtherMeansTwoThatDisagreeAreBothInDoubt) {
  suspicion.operation = kLibrary;
  faulty.cpus = {2};
  places = {{2, 1, 0}, {5, 0, 1}};
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.extent, Extent::Undecided);
  EXPECT_TRUE(verdict.right.empty());
}

TEST_F(BlameTest, WithOtherMeansTwoAreEnough) {
  faulty.cpus = {2};
  places = {{2, 1, 0}, {5, 0, 1}};
  EXPECT_EQ(judge().place.cpu, 2U);
  EXPECT_EQ(judge().extent, Extent::Core);
}

TEST_F(BlameTest, WithOtherMeansOneIsEnough) {
  faulty.cpus = {2};
  places = {{2, 1, 0}};
  EXPECT_EQ(judge().wrongAlone, 10U);
}

TEST_F(BlameTest, AThreadThatCannotBeUsedHasNoVoice) {
  faulty.cpus = {2};
  places.push_back({8, 0, 0});
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.right, (Cpus{0, 1, 3, 4, 5, 6, 7}));
}

// Catches an hour of trying on a machine of hundreds of processors, in which the test's time limit
// takes all that was found.
TEST_F(BlameTest, WhereTimeIsShortTheNearestAreTriedAndTheOthersAreToldToBeLeftOut) {
  faulty.cpus = {2};
  int questions = 0;
  whyNotOn = [&]() -> std::string { return ++questions > 3 ? "it takes too long" : ""; };
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.place.cpu, 2U);
  EXPECT_TRUE(verdict.wasTried);
  EXPECT_EQ(verdict.wrongAlone, 10U);
  EXPECT_EQ(verdict.right, (Cpus{0, 3, 5})) << "who disagrees, a sibling, another core";
  EXPECT_EQ(verdict.extent, Extent::Thread);
  EXPECT_EQ(verdict.leftOut, 4U);
  EXPECT_EQ(verdict.whyLeftOut, "it takes too long");
}

TEST_F(BlameTest, WhereThereIsNoTimeNothingIsTried) {
  whyNotOn = [] { return std::string("it takes too long"); };
  allowThreads(0);
  const Verdict verdict = judge();
  EXPECT_FALSE(verdict.wasTried);
  EXPECT_EQ(verdict.whyLeftOut, "it takes too long");
  EXPECT_EQ(started, 0);
}

TEST_F(BlameTest, UnderLoadNothingIsTriedWhenTheTimeIsOver) {
  bool isOver = false;
  allowThreads(8);
  whyNotOn = [&]() -> std::string { return isOver ? "it takes too long" : ""; };
  start = [&, inner = start](std::function<void()> work) {
    isOver = started == 7;
    return inner(std::move(work));
  };
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.right.size(), 7U);
  EXPECT_EQ(verdict.wrongUnderLoad, std::nullopt);
}

// Catches a process that ends by a signal, as a faulty processor would have it.
TEST_F(BlameTest, WhereNoThreadCanBeStartedNothingIsTriedAndThatIsTold) {
  allowThreads(0);
  const Verdict verdict = judge();
  EXPECT_FALSE(verdict.wasTried);
  EXPECT_EQ(verdict.whyLeftOut, "the system started no more threads");
  EXPECT_EQ(verdict.extent, Extent::Undecided);
}

TEST_F(BlameTest, WhomNoThreadCouldBeStartedForIsLeftOut) {
  faulty.cpus = {2};
  allowThreads(3);
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.place.cpu, 2U);
  EXPECT_EQ(verdict.wrongAlone, 10U);
  EXPECT_EQ(verdict.right, (Cpus{3, 5}));
  EXPECT_EQ(verdict.leftOut, 5U);
  EXPECT_EQ(verdict.whyLeftOut, "the system started no more threads");
}

// Catches "right with all the others busy" of what was not tried, and threads that are left behind.
TEST_F(BlameTest, ALoadThatCannotBeMadeIsNoTry) {
  allowThreads(8 + 5);
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.right.size(), 7U);
  EXPECT_EQ(verdict.wrongUnderLoad, std::nullopt);
}

TEST_F(BlameTest, AnAnswerThatWasKnownBeforeIsBelievedAgainstAll) {
  for (const Operation& operation : processorOperations()) {
    if (operation.unit != Unit::Width) continue;
    suspicion.operation = operation;
    break;
  }
  suspicion.seed = kKnownSeed;
  suspicion.isAnswer = true;
  suspicion.answeredBy = suspicion.cpu;
  suspicion.mismatch = {0, 0, 1, 2};
  faulty.cpus = {0, 1, 2, 3, 4, 5, 6};
  const Verdict verdict = judge();
  EXPECT_EQ(verdict.place.cpu, 2U);
  EXPECT_EQ(verdict.right, Cpus{7});
  EXPECT_EQ(verdict.mismatch.found, 2U);
}

}  // namespace
}  // namespace providers

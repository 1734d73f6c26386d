#include <gtest/gtest.h>

#include "history/store/Database.h"
#include "history/store/Statement.h"
#include "history/store/Store.h"
#include "tests/history/HistoryFixture.h"
#include "tests/history/PowerCut.h"

namespace history {
namespace {

namespace fs = std::filesystem;

/// What was on the disk by all that the recorder said.
struct Promised {
  std::vector<std::string> ended;        ///< runs
  std::string going;                     ///< the run that was not told to have ended
  std::uint64_t testsOfTheOneGoing = 0;  ///< that had ended
};

struct Row {
  const char* name;
  PowerCut::Fate fate;
  std::uint64_t mostBytes;
  int runs;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

void recordRunOfTwoTests(History& history, engine::Time start, Promised& promised) {
  Recorder recorder(history);
  promised.testsOfTheOneGoing = 0;
  Tale tale(recorder, start);
  tale.runStarts();
  promised.going = recorder.id();
  for (int test = 0; test < 2; ++test) {
    tale.testStarts().measures("read", 5.0 + test);
    tale.says(engine::OutputLine{engine::Stream::kOutput, std::string(9000, 'x'), false});
    tale.testEnds();
    ++promised.testsOfTheOneGoing;
  }
  tale.runEnds();
  promised.ended.push_back(recorder.id());
  promised.going.clear();
}

/// Until the power goes, or all have ended.
Promised recordRuns(int count, const fs::path& folder, const Options& options) {
  Promised promised;
  try {
    History history = History::open(folder, options);
    for (int run = 0; run < count; ++run) {
      recordRunOfTwoTests(history, firstTime() + std::chrono::minutes(run), promised);
    }
  } catch (const HistoryError&) {  // the power has gone
  }
  return promised;
}

std::uint64_t endedTestsOf(Database& database, const std::string& id) {
  Statement tests(database,
                  "SELECT count(*) FROM tests JOIN runs ON runs.number = run WHERE id = ? AND "
                  "tests.outcome IS NOT NULL");
  tests.bind(1, std::string_view(id));
  return tests.step() ? tests.count(0) : 0;
}

std::string integrityOf(Database& database) {
  Statement check(database, "PRAGMA integrity_check");
  return check.step() ? check.text(0) : "no answer";
}

void expectKept(const History& history, const std::string& id) {
  const RunRecord run = history.run(id);
  EXPECT_EQ(run.state, RunState::kEnded) << id;
  EXPECT_EQ(run.tests.passed, 2U) << id;
  EXPECT_EQ(linesOf(history, id).size(), 10U) << id;
}

class PowerCutTest : public testing::TestWithParam<Row> {
 protected:
  /// True once the power stayed to the end.
  bool cutAfter(std::uint64_t operations) {
    const ScratchFolder scratch;
    const fs::path folder = scratch.path() / "state";
    Options options;
    options.layer = PowerCut::layer();
    options.mostBytes = GetParam().mostBytes;
    PowerCut::instance().plan(operations);
    const Promised promised = recordRuns(GetParam().runs, folder, options);
    const bool isThrough = !PowerCut::instance().hasHappened();
    PowerCut::instance().leaveBehind(GetParam().fate);
    expectPromisesKept(folder, promised);
    return isThrough;
  }

 private:
  void expectPromisesKept(const fs::path& folder, const Promised& promised) {
    PowerCut::instance().plan(UINT64_MAX);  // the power is back
    Options options;
    options.layer = PowerCut::layer();
    History history = History::open(folder, options);
    Database database(fileIn(folder), options.layer, std::chrono::seconds(1));
    EXPECT_EQ(integrityOf(database), "ok");
    if (!promised.ended.empty()) expectKept(history, promised.ended.back());
    if (GetParam().mostBytes > 1'000'000) {
      for (const std::string& id : promised.ended) expectKept(history, id);
    }
    if (!promised.going.empty()) {
      EXPECT_GE(endedTestsOf(database, promised.going), promised.testsOfTheOneGoing);
    }
    recordRun(history, firstTime() + std::chrono::hours(1));  // and it goes on
  }
};

TEST_P(PowerCutTest, CostsNoFinishedTestAtWhicheverWriteItComes) {
  std::uint64_t operations = 0;
  while (!cutAfter(operations)) {
    ASSERT_FALSE(HasFailure()) << "the power went after " << operations << " operations";
    ++operations;
  }
  EXPECT_GT(operations, 50U);  // else the runs were not written through the layer
}

constexpr std::uint64_t kRoomy = 100'000'000;
/// One run has room in it, and two have not.
constexpr std::uint64_t kScarce = 90'000;

INSTANTIATE_TEST_SUITE_P(
    Fates, PowerCutTest,
    testing::Values(Row{"Lost", PowerCut::Fate::kLost, kRoomy, 2},
                    Row{"Kept", PowerCut::Fate::kKept, kRoomy, 2},
                    Row{"EveryOther", PowerCut::Fate::kEveryOther, kRoomy, 2},
                    Row{"FirstHalf", PowerCut::Fate::kFirstHalf, kRoomy, 2},
                    Row{"LastTorn", PowerCut::Fate::kLastTorn, kRoomy, 2},
                    Row{"LostWhileMakingRoom", PowerCut::Fate::kLost, kScarce, 3},
                    Row{"EveryOtherWhileMakingRoom", PowerCut::Fate::kEveryOther, kScarce, 3}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace history

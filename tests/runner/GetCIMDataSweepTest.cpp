#include <gtest/gtest.h>

#include <memory>

#include "tests/runner/WalkCourse.h"

/// Every framework call of a query fails in each of the four ways; each time the whole journal, the
/// answer and the runner's tables are as the course says.
namespace support {
namespace {

using Access = DiagsRunnerAccess;

const std::vector<WalkedTest> kTests = {{"Plain"},
                                        {"Far", Route::serviceByUpcall},
                                        {"Blocked", Route::direct, true},
                                        {"Remote", Route::elementByUpcall},
                                        {"Last"}};

std::unique_ptr<WalkWorld> makeWorld() {
  auto world = std::make_unique<WalkWorld>(kTests);
  world->runner();
  return world;
}

std::string answerOf(const CourseEnd& end) {
  std::string text = end.added.empty() ? "false: " : "true: ";
  for (const std::string& id : end.added) {
    text += id + "|";
  }
  return text;
}

class SweptQuery : public testing::TestWithParam<Query> {};

TEST_P(SweptQuery, AnswersEachFailureAsLaidOut) {
  const Course course = walkCourse(GetParam(), kTests);
  const bool isPegasus = GetParam().family == NZELVOR20::TCIMValue("pegasus");
  const SweepResult swept = faultSweep(
      makeWorld,
      [](WithRunner<>& world) {
        Query query = GetParam();
        return query.ask(world.runner());
      },
      [&](const FaultPoint& point, const Outcome& outcome, WithRunner<>& world) {
        const CourseEnd wanted = endAfter(course, point);
        EXPECT_TRUE(outcome.returned());
        EXPECT_EQ(outcome.text, answerOf(wanted));
        EXPECT_EQ(outcome.all, wanted.journal);
        EXPECT_EQ(Access::testInstances(world.runner()).size(),
                  wanted.isWhole ? kTests.size() : 0U);
        EXPECT_EQ(Access::diagPegasusNS(world.runner()).size(),
                  isPegasus ? wanted.added.size() : 0U);
      });
  EXPECT_EQ(swept.faultless.all, faultlessEnd(course).journal);
  EXPECT_EQ(swept.faultless.text, answerOf(faultlessEnd(course)));
  EXPECT_GT(swept.points, 3 * swept.calls);
}

INSTANTIATE_TEST_SUITE_P(InTheEnumerationMode, SweptQuery, testing::Values(Query{}));
INSTANTIATE_TEST_SUITE_P(InAnotherModeForPegasus, SweptQuery,
                         testing::Values(Query{kOtherMode, NZELVOR20::TCIMValue("pegasus")}));

TEST(SweptEnumeration, ListsWhatWasNamedBeforeAndAfterTheFailure) {
  const Course course = walkCourse(Query{}, kTests);
  const std::string entered = lines({trace("DiagsRunner::EnumerateDiagTests")});
  faultSweep(
      makeWorld, [](WithRunner<>& world) { return world.runner().EnumerateDiagTests(""); },
      [&](const FaultPoint& point, const Outcome& outcome, WithRunner<>& world) {
        const CourseEnd wanted = endAfter(course, point);
        std::string listing;
        for (const std::string& id : wanted.added) {
          listing += id + "|";
        }
        EXPECT_TRUE(outcome.returned());
        EXPECT_EQ(outcome.text,
                  listing.empty() ? "No matching diagnostic test or device found.\n" : listing);
        EXPECT_EQ(outcome.all, entered + wanted.journal);
        EXPECT_EQ(Access::diagNS(world.runner()).size(), wanted.added.size());
      });
}

}  // namespace
}  // namespace support

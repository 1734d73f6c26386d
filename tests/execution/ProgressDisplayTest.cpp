#include <gtest/gtest.h>

#include <stdexcept>

#include "execution/ProgressDisplay.h"
#include "tests/results/Events.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

const Events kWiped = {out("\b\b\b\b"), flushed(), out("    "), flushed()};
const Events kShown99 = {out("\b\b\b\b"), flushed(), out("99%"), flushed()};

/// A percentage, and the way back in front of it.
Events shown(int percentage) {
  const std::size_t width = percentage < 10 ? 2 : percentage < 100 ? 3 : 4;
  return {out(std::to_string(percentage) + "%"), flushed(), out(std::string(width, '\b')),
          flushed()};
}

Events countedUp(int percentage) { return joined({shown(percentage), {sleptFor(1000)}}); }

/// Shows a run whose clock reads `seconds` after the start, one reading after the other; the last
/// one finds the run over.
Events display(unsigned int minutes, const std::vector<std::int64_t>& seconds) {
  World world;
  SharedFlag finished;
  std::vector<std::int64_t> readings = {0};
  readings.insert(readings.end(), seconds.begin(), seconds.end());
  world.platform.setReadings(readings);
  world.platform.atReading(static_cast<int>(readings.size()), [&] { finished.set(true); });
  diagsrunner::ProgressDisplay(minutes, finished).show();
  EXPECT_EQ(world.platform.readings(), static_cast<int>(readings.size()));
  Events events;
  for (const Event& event : world.journal.events()) {
    events.push_back(event.text);
  }
  return events;
}

TEST(ProgressDisplay, ARunThatIsOverIsWipedAtOnce) {
  World world;
  SharedFlag finished;
  finished.set(true);
  world.platform.setReadings({0});
  diagsrunner::ProgressDisplay(1, finished).show();
  EXPECT_EQ(world.journal.all(), text(kWiped));
}

TEST(ProgressDisplay, EachRiseIsShownOnceAndThenCountedUp) {
  EXPECT_EQ(display(5, {0, 3, 3, 27, 30, 29, 30, 297}),
            joined({shown(1), shown(9), shown(10), shown(10), kShown99, kWiped}));
}

TEST(ProgressDisplay, ARunThatEndsAt42PercentIsCountedUpInStepsOfTen) {
  EXPECT_EQ(display(5, {126}), joined({shown(42), countedUp(52), countedUp(62), countedUp(72),
                                       countedUp(82), countedUp(92), kWiped}));
}

TEST(ProgressDisplay, ARunThatEndsAtOnceIsCountedUpFromNothing) {
  Events wanted;
  for (int percentage = 10; percentage <= 100; percentage += 10) {
    wanted = joined({wanted, countedUp(percentage)});
  }
  EXPECT_EQ(display(5, {0}), joined({wanted, kWiped}));
}

TEST(ProgressDisplay, TheCountReachesAHundredAtTheMost) {
  EXPECT_EQ(display(5, {270}), joined({shown(90), countedUp(100), kWiped}));
  EXPECT_EQ(display(5, {273}), joined({shown(91), kWiped}));
}

TEST(ProgressDisplay, ARunThatEndsLateIsNotCountedUp) {
  EXPECT_EQ(display(5, {285}), joined({shown(95), kWiped}));
  EXPECT_EQ(display(5, {288}), joined({shown(96), kWiped}));
  EXPECT_EQ(display(5, {294}), joined({shown(98), kWiped}));
  EXPECT_EQ(display(5, {297}), joined({kShown99, kWiped}));
  EXPECT_EQ(display(5, {300}), joined({kShown99, kWiped}));
}

TEST(ProgressDisplay, ARunLongerThanExpectedShows99OnceAndNothingMore) {
  EXPECT_EQ(display(5, {294, 297, 300, 600, 30000, 30003}), joined({shown(98), kShown99, kWiped}));
}

TEST(ProgressDisplay, After99AFallIsNotShownButARiseFromThereIs) {
  EXPECT_EQ(display(5, {297, 30, 60, 288}), joined({kShown99, shown(20), shown(96), kWiped}));
}

TEST(ProgressDisplay, LessThanOnePercentIsNotShown) {
  EXPECT_EQ(display(5, {0, 1, 2, 288}), joined({shown(96), kWiped}));
}

TEST(ProgressDisplay, TheQuotientIsOfSinglePrecision) {
  // 87 / 300 * 100 is 28.999... in double precision.
  EXPECT_EQ(display(5, {87, 288}), joined({shown(29), shown(96), kWiped}));
}

TEST(ProgressDisplay, WithoutAnExpectedTimeNothingIsShownOrCountedUp) {
  EXPECT_EQ(display(0, {0, 1, 100, 100000}), kWiped);
  EXPECT_EQ(display(0, {0}), kWiped);
  EXPECT_EQ(display(0, {1}), kWiped);
}

TEST(ProgressDisplay, TheExpectedSecondsAreAProductOf32Bits) {
  // 71582789 minutes are 44 seconds more than 32 bits hold.
  EXPECT_EQ(display(71582789, {22, 43}), joined({shown(50), shown(97), kWiped}));
  // And 2^31 minutes are none.
  EXPECT_EQ(display(2147483648U, {10, 50}), kWiped);
}

TEST(ProgressDisplay, AClockThatIsSetBackShowsNothingAndCountsUpFromThere) {
  const Events counted = joined({countedUp(-4), countedUp(6), countedUp(16), countedUp(26),
                                 countedUp(36), countedUp(46), countedUp(56), countedUp(66),
                                 countedUp(76), countedUp(86), countedUp(96)});
  EXPECT_EQ(display(5, {-42}), joined({counted, kWiped}));
}

TEST(ProgressDisplay, OnePercentBelowNothingIsNotCountedUp) { EXPECT_EQ(display(5, {-3}), kWiped); }

TEST(ProgressDisplay, AClockThatJumpsFarStaysAt99) {
  EXPECT_EQ(display(1, {std::int64_t{1} << 60}), joined({kShown99, kWiped}));
}

TEST(ProgressDisplay, PollsTheClockWithoutAPause) {
  World world;
  SharedFlag finished;
  world.platform.atReading(5000, [&] { finished.set(true); });
  diagsrunner::ProgressDisplay(0, finished).show();
  EXPECT_EQ(world.platform.readings(), 5000);
  EXPECT_EQ(world.journal.sleeps(), "");
}

TEST(ProgressDisplay, HasNoTimeOut) {
  World world;
  SharedFlag finished;
  EXPECT_THROW(diagsrunner::ProgressDisplay(1, finished).show(), std::logic_error)
      << "the clock of the test loses its patience first";
}

TEST(PrintStatus, ShowsTheRunOfTheRunner) {
  WithRunner<> world;
  DiagsRunner& runner = world.runner();
  world.platform.setReadings({0, 285});
  world.platform.atReading(2, [&] { DiagsRunnerAccess::runFinished(runner).set(true); });
  runner.printStatus(5);
  EXPECT_EQ(world.journal.all(), text(joined({shown(95), kWiped})));
}

TEST(PrintStatus, ASecondOneAfterTheRunOnlyWipes) {
  WithRunner<> world;
  DiagsRunnerAccess::runFinished(world.runner()).set(true);
  for (int i = 0; i < 2; ++i) {
    world.journal.clear();
    world.runner().printStatus(5);
    EXPECT_EQ(world.journal.all(), text(kWiped));
  }
}

}  // namespace
}  // namespace support

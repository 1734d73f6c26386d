#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "framework/EVORStatusCode.h"
#include "framework/ICIMClass.h"
#include "tests/support/FaultSweep.h"

namespace support {
namespace {

std::unique_ptr<World> oneDisk() {
  auto world = std::make_unique<World>();
  world->addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  return world;
}

/// Two calls, of which the first returns a handle, and a query of the operating system.
std::string classNameOf(World& world) {
  const auto found = world.root->handle()->GetClass("CIM_Disk", {});
  if (!found) {
    return "none";
  }
  world.script.enter("query", Returns::other, Kind::os);
  return found->GetName();
}

void ignore(const FaultPoint&, const Outcome&, World&) {}

TEST(FaultSweep, FailsEachCallInEachWayThatItCanFail) {
  std::vector<std::string> seen;
  const SweepResult result = faultSweep(
      oneDisk, classNameOf,
      [&](const FaultPoint& point, const Outcome&, World&) { seen.push_back(describe(point)); });
  const std::string first = "call 1, ns root.GetClass(\"CIM_Disk\", {}): ";
  const std::string second = "call 2, class CIM_Disk.GetName(): ";
  EXPECT_EQ(seen, (std::vector<std::string>{first + "vor exception", first + "standard exception",
                                            first + "other exception", first + "empty handle",
                                            second + "vor exception", second + "standard exception",
                                            second + "other exception"}));
  EXPECT_EQ(result.calls, 2);
  EXPECT_EQ(result.points, 7);
}

TEST(FaultSweep, TellsHowTheOperationEnded) {
  const auto check = [](const FaultPoint& point, const Outcome& outcome, World&) {
    switch (point.fault) {
      case Fault::vorException:
        EXPECT_EQ(outcome.kind, Outcome::Kind::vorException);
        EXPECT_EQ(outcome.status, NZELVOR20::eVORFailed);
        break;
      case Fault::standardException:
        EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
        EXPECT_EQ(outcome.text, kScriptedFailure);
        break;
      case Fault::otherException:
        EXPECT_EQ(outcome.kind, Outcome::Kind::otherException);
        break;
      case Fault::emptyHandle:
        EXPECT_EQ(outcome.text, "none");
        EXPECT_TRUE(outcome.returned());
        break;
    }
  };
  faultSweep(oneDisk, classNameOf, check);
}

TEST(FaultSweep, EndsWithTheRunThatNothingFails) {
  const SweepResult result = faultSweep(oneDisk, classNameOf, ignore);
  EXPECT_TRUE(result.faultless.returned());
  EXPECT_EQ(result.faultless.text, "CIM_Disk");
  EXPECT_EQ(result.faultless.calls,
            lines({"ns root.GetClass(\"CIM_Disk\", {})", "class CIM_Disk.GetName()"}));
}

TEST(FaultSweep, CountsTheOperatingSystemWhenAsked) {
  EXPECT_EQ(faultSweep(oneDisk, classNameOf, ignore, Counting::frameworkAndOs).calls, 3);
}

TEST(FaultSweep, TheWorldIsStillThereForTheCheck) {
  faultSweep(oneDisk, classNameOf, [](const FaultPoint&, const Outcome& outcome, World& world) {
    EXPECT_EQ(outcome.calls, world.journal.calls());
    EXPECT_TRUE(world.theClass("CIM_Disk"));
  });
}

TEST(FaultSweep, AHandleKeptIsALeak) {
  static boost::shared_ptr<NZELVOR20::ICIMClass> kept;
  const auto keepOne = [](World& world) {
    kept = world.root->handle()->GetClass("CIM_Disk", {});
    world.script.enter("second call");
    return std::string();
  };
  testing::TestPartResultArray failures;
  {
    const testing::ScopedFakeTestPartResultReporter intercept(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    faultSweep(oneDisk, keepOne, ignore);
  }
  kept.reset();
  ASSERT_GT(failures.size(), 0);
  EXPECT_NE(std::string(failures.GetTestPartResult(0).message())
                .find("handles kept after call 2, second call: vor exception"),
            std::string::npos);
}

}  // namespace
}  // namespace support

#include <gtest/gtest.h>

#include "framework/TVORException.h"
#include "tests/support/Script.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::TVORException;

TEST(Script, WithoutFaultsACallIsRecordedAndPasses) {
  World world;
  EXPECT_FALSE(world.script.enter("call", Returns::handle));
  EXPECT_EQ(world.journal.calls(), lines({"call"}));
  EXPECT_EQ(world.script.fired(), 0);
}

TEST(Script, FailsTheCallOfTheNumberTold) {
  World world;
  world.script.failCall(2, Fault::standardException);
  world.script.enter("first");
  EXPECT_FALSE(world.script.reached());
  EXPECT_THROW(world.script.enter("second"), std::runtime_error);
  world.script.enter("third");
  EXPECT_EQ(world.script.reachedText(), "second");
  EXPECT_EQ(world.script.fired(), 1);
}

TEST(Script, AFailingCallIsRecordedAllTheSame) {
  World world;
  world.script.failCall(1, Fault::otherException);
  EXPECT_THROW(world.script.enter("call"), int);
  EXPECT_EQ(world.journal.calls(), lines({"call"}));
}

TEST(Script, VorExceptionsCarryStatusOne) {
  World world;
  world.script.failCall(1, Fault::vorException);
  try {
    world.script.enter("call");
    FAIL() << "nothing was thrown";
  } catch (const TVORException& exception) {
    EXPECT_EQ(exception.GetStatus().GetStatusCode(), NZELVOR20::eVORFailed);
    EXPECT_NE(std::string(exception.what()).find(kScriptedFailure), std::string::npos);
  }
}

TEST(Script, EmptyHandlesAreAskedOfCallsThatReturnHandles) {
  World world;
  world.script.failCall(1, Fault::emptyHandle);
  EXPECT_TRUE(world.script.enter("call", Returns::handle));
  EXPECT_FALSE(world.script.notApplicable());
}

TEST(Script, EmptyHandlesLeaveOtherCallsAloneAndSaySo) {
  World world;
  world.script.failCall(1, Fault::emptyHandle);
  EXPECT_FALSE(world.script.enter("call"));
  EXPECT_TRUE(world.script.notApplicable());
  EXPECT_TRUE(world.script.reached());
  EXPECT_EQ(world.script.fired(), 0);
}

TEST(Script, OperatingSystemCallsAreCountedOnlyWhenAsked) {
  World world;
  world.script.failCall(1, Fault::standardException);
  world.script.failCall(2, Fault::otherException, Counting::frameworkAndOs);
  world.script.enter("query", Returns::other, Kind::os);
  EXPECT_THROW(world.script.enter("query", Returns::other, Kind::os), int);
  EXPECT_THROW(world.script.enter("call"), std::runtime_error);
}

TEST(Script, FailOnMatchesAPartOfTheText) {
  World world;
  world.script.failOn("inst A", Fault::vorException);
  world.script.enter("inst B.GetProperty");
  EXPECT_THROW(world.script.enter("inst A.GetProperty"), TVORException);
  EXPECT_NO_THROW(world.script.enter("inst A.GetProperty"));
}

TEST(Script, FailOnCanSkipAndRepeat) {
  World world;
  world.script.failOn("call", Fault::vorException, 2, 1);
  EXPECT_NO_THROW(world.script.enter("call"));
  EXPECT_THROW(world.script.enter("call"), TVORException);
  EXPECT_THROW(world.script.enter("call"), TVORException);
  EXPECT_NO_THROW(world.script.enter("call"));
}

TEST(Script, FailOnCanGoOnForEver) {
  World world;
  world.script.failOn("call", Fault::vorException, Script::kAlways);
  for (int turn = 0; turn < 5; ++turn) {
    EXPECT_THROW(world.script.enter("call"), TVORException);
  }
}

TEST(Script, HooksRunBeforeTheCallFails) {
  World world;
  int seen = 0;
  world.script.onCall("call", [&] { ++seen; });
  world.script.failOn("call", Fault::vorException);
  EXPECT_THROW(world.script.enter("call"), TVORException);
  world.script.enter("other");
  EXPECT_EQ(seen, 1);
}

TEST(Script, RefusedCallsAreRecordedAndNotSupported) {
  World world;
  try {
    world.script.refuse("call");
  } catch (const TVORException& exception) {
    EXPECT_EQ(exception.GetStatus().GetStatusCode(), NZELVOR20::eVORNotSupported);
  }
  EXPECT_EQ(world.journal.calls(), lines({"call"}));
}

TEST(Script, ANewWorldKnowsNoFaultsOfTheFormerOne) {
  {
    World world;
    world.script.failOn("call", Fault::vorException, Script::kAlways);
    world.script.failCall(1, Fault::vorException);
  }
  World world;
  EXPECT_NO_THROW(world.script.enter("call"));
}

}  // namespace
}  // namespace support

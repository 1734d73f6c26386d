#include <gtest/gtest.h>

#include <iostream>

#include "tests/support/Journal.h"
#include "tests/support/World.h"

namespace support {
namespace {

TEST(Journal, KeepsTheOrderOfDifferentKinds) {
  World world;
  world.logger.Log(3, "before");
  world.platform.sleep(5000);
  std::cout << "shown";
  world.logger.Log(0, "after");
  EXPECT_EQ(world.journal.all(),
            lines({trace("before"), sleptFor(5000), out("shown"), error("after")}));
}

TEST(Journal, OutputWrittenInPiecesIsOneEventUntilItIsFlushed) {
  World world;
  std::cout << 42 << '%' << std::flush << "\b\b\b" << std::flush;
  EXPECT_EQ(world.journal.outputPieces(), lines({out("42%"), flushed(), out("\b\b\b"), flushed()}));
}

TEST(Journal, OutputIsKeptAsItIs) {
  World world;
  std::cout << "one" << std::endl << "two\t";
  world.logger.Log(3, "between");
  std::cout << "three";
  EXPECT_EQ(world.journal.output(), "one\ntwo\tthree");
}

TEST(Journal, AllButFlushesLeavesOnlyTheFlushesOut) {
  World world;
  std::cout << "one" << std::endl;
  world.platform.sleep(1);
  EXPECT_EQ(world.journal.allButFlushes(), lines({out("one\n"), sleptFor(1)}));
}

TEST(Journal, EachSelectionHasItsOwnKindOnly) {
  World world;
  world.script.enter("call");
  world.script.enter("query", Returns::other, Kind::os);
  world.logger.Log(3, "line");
  world.platform.allocate(7);
  EXPECT_EQ(world.journal.calls(), lines({"call"}));
  EXPECT_EQ(world.journal.osCalls(), lines({"query"}));
  EXPECT_EQ(world.journal.log(), lines({trace("line")}));
  EXPECT_EQ(world.journal.files(), lines({"allocate(7)"}));
  EXPECT_EQ(world.journal.sleeps(), "");
}

TEST(Journal, CountsWholeLinesOnly) {
  World world;
  world.script.enter("call");
  world.script.enter("call again");
  world.script.enter("call");
  EXPECT_EQ(world.journal.countOf("call"), 2);
}

TEST(Journal, ClearForgetsPendingOutputToo) {
  World world;
  std::cout << "old";
  world.journal.clear();
  EXPECT_EQ(world.journal.all() + world.journal.output(), "");
}

TEST(Journal, StandardOutputIsGivenBack) {
  std::streambuf* const before = std::cout.rdbuf();
  {
    World world;
    EXPECT_NE(std::cout.rdbuf(), before);
  }
  EXPECT_EQ(std::cout.rdbuf(), before);
}

}  // namespace
}  // namespace support

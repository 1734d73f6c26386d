#include <gtest/gtest.h>

#include <thread>

#include "diagsrunner/SharedFlag.h"

namespace {

TEST(SharedFlag, IsDownAtFirst) { EXPECT_FALSE(SharedFlag().isSet()); }

TEST(SharedFlag, CopiesTakeTheValueOfTheMoment) {
  SharedFlag flag;
  flag.set(true);
  SharedFlag copy(flag);
  SharedFlag assigned;
  assigned = flag;
  flag.set(false);
  EXPECT_TRUE(copy.isSet());
  EXPECT_TRUE(assigned.isSet());
}

TEST(SharedFlag, WhoSeesItRaisedSeesWhatWasWrittenBefore) {
  SharedFlag flag;
  int written = 0;
  std::thread writer([&] {
    written = 42;
    flag.set(true);
  });
  while (!flag.isSet()) {
    std::this_thread::yield();
  }
  EXPECT_EQ(written, 42);
  writer.join();
}

}  // namespace

#include <gtest/gtest.h>

#include <stdexcept>

#include "providers/common/SharedReading.h"

namespace providers {
namespace {

class SharedReadingTest : public ::testing::Test {
 protected:
  double now = 10;
  int reads = 0;
  bool broken = false;
  SharedDevices devices{[this] {
                          ++reads;
                          if (broken) throw std::runtime_error("no machine");
                          return std::vector<Device>{{"fan" + std::to_string(reads), "Fan", {}}};
                        },
                        [this] { return now; }, 0.5};
};

TEST_F(SharedReadingTest, AreReadOnceForAllWhoAskInAShortTime) {
  EXPECT_EQ(reads, 0) << "nobody has asked yet";
  EXPECT_EQ(devices.get().at(0).id, "fan1");
  now += 0.4;
  EXPECT_EQ(devices.get().at(0).id, "fan1");
}

TEST_F(SharedReadingTest, AreReadAnewWhenTheyAreNoLongerFresh) {
  devices.get();
  now += 0.5;
  EXPECT_EQ(devices.get().at(0).id, "fan2");
}

TEST_F(SharedReadingTest, AFailureIsToldAndNotKept) {
  broken = true;
  EXPECT_THROW(devices.get(), std::runtime_error);
  broken = false;
  EXPECT_EQ(devices.get().at(0).id, "fan2");
  now += 0.5;
  broken = true;
  EXPECT_THROW(devices.get(), std::runtime_error) << "what was read before is not the truth now";
}

}  // namespace
}  // namespace providers

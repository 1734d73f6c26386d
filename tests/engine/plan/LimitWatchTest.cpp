#include <gtest/gtest.h>

#include "engine/plan/LimitWatch.h"

namespace engine {
namespace {

Measurement measured(const std::string& name, double value) {
  Measurement measurement;
  measurement.name = name;
  measurement.value = value;
  return measurement;
}

Limit atLeast(const std::string& name, double minimum) {
  Limit limit;
  limit.measurement = name;
  limit.minimum = minimum;
  return limit;
}

TEST(LimitWatch, PutsTheLimitsToAMeasurementAndTellsOfOneOutside) {
  const std::vector<Limit> limits = {atLeast("band*", 5), atLeast("other", 1)};
  LimitWatch watch(&limits);
  EXPECT_EQ(watch.take(measured("bandwidth", 7)).minimum, 5);
  EXPECT_FALSE(watch.isBroken());
  watch.take(measured("bandwidth", 3.5));
  EXPECT_TRUE(watch.isBroken());
  EXPECT_EQ(watch.complaints(), (std::vector<std::string>{"bandwidth 3.5 is below 5"}));
  ASSERT_EQ(watch.unmet().size(), 1U);
  EXPECT_EQ(watch.unmet().front().measurement, "other");
}

TEST(LimitWatch, AMeasurementsOwnLimitsHoldWithoutAPlan) {
  LimitWatch watch(nullptr);
  Measurement hot = measured("temperature", 99);
  hot.maximum = 80;
  watch.take(hot);
  EXPECT_EQ(watch.complaints(), (std::vector<std::string>{"temperature 99 is above 80"}));
  EXPECT_TRUE(watch.unmet().empty());
}

TEST(LimitWatch, KeepsNoMoreThanAHundredComplaints) {
  const std::vector<Limit> limits = {atLeast("n", 5)};
  LimitWatch watch(&limits);
  for (int i = 0; i < 101; ++i) watch.take(measured("n", 1));
  EXPECT_EQ(watch.complaints().back(), "1 more measurement is outside of its limits");
  for (int i = 101; i < 1000; ++i) watch.take(measured("n", 1));
  const std::vector<std::string> complaints = watch.complaints();
  ASSERT_EQ(complaints.size(), 101U);
  EXPECT_EQ(complaints.back(), "900 more measurements are outside of their limits");
}

}  // namespace
}  // namespace engine

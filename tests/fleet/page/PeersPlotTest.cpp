#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <regex>

#include "fleet/page/PeersPlot.h"

namespace fleet::page {
namespace {

Slow slowOf(double value, double median, double deviation) {
  Slow slow;
  slow.value = value;
  slow.median = median;
  slow.ratio = value / median;
  slow.deviation = deviation;
  slow.peers = 10;
  return slow;
}

/// Where the shape of a class begins.
double leftOf(const std::string& plot, const std::string& style) {
  const std::regex shape("class=\"" + style + "\" x1?=\"([-0-9.]+)\"");
  std::smatch found;
  return std::regex_search(plot, found, shape) ? std::stod(found[1]) : -1;
}

TEST(PeersPlot, ALowValueStandsToTheLeftOfItsPeersAndAHighOneToTheRight) {
  const std::string low = peersPlot(slowOf(60, 100, 5));
  EXPECT_LT(leftOf(low, "value odd"), leftOf(low, "good"));
  EXPECT_LT(leftOf(low, "good"), leftOf(low, "limit"));
  const std::string high = peersPlot(slowOf(140, 100, 5));
  EXPECT_GT(leftOf(high, "value odd"), leftOf(high, "limit"));
}

TEST(PeersPlot, SaysInWordsWhatItShows) {
  EXPECT_THAT(peersPlot(slowOf(60, 100, 5)),
              testing::HasSubstr("<title>60, 60 % of the median of 10 peers, 100</title>"));
}

struct Odd {
  const char* name;
  Slow slow;
  bool isDrawn;
};

constexpr double kMost = std::numeric_limits<double>::max();
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

const Odd kOdds[] = {
    {"all the same", slowOf(1, 1, 0), true},
    {"peers without any deviation", slowOf(0.5, 1, 0), true},
    {"the farthest that there is", slowOf(-kMost, kMost, 0), true},
    {"no number", slowOf(kNone, 1, 1), false},
    {"an infinite one", slowOf(1, 1, kInfinite), false},
};

TEST(PeersPlot, DrawsNumbersThatHaveAPlaceAndNoOthers) {
  for (const Odd& odd : kOdds) {
    const std::string plot = peersPlot(odd.slow);
    EXPECT_EQ(!plot.empty(), odd.isDrawn) << odd.name;
    EXPECT_EQ(plot.find("nan"), std::string::npos) << odd.name;
    if (odd.isDrawn) {
      EXPECT_GE(leftOf(plot, "value odd"), 0) << odd.name;
      EXPECT_LE(leftOf(plot, "value odd"), 220) << odd.name;
    }
  }
}

}  // namespace
}  // namespace fleet::page

#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "fleet/page/Words.h"

namespace fleet::page {
namespace {

TEST(FleetWords, EveryVerdictHasALookOfItsOwn) {
  std::set<char> letters;
  std::set<std::string> words;
  for (std::size_t i = 0; i < kVerdicts; ++i) {
    const Look& look = lookOf(static_cast<Verdict>(i));
    EXPECT_EQ(static_cast<std::size_t>(look.verdict), i);
    letters.insert(look.letter);
    words.insert(look.word);
  }
  EXPECT_EQ(letters.size(), kVerdicts);
  EXPECT_EQ(words.size(), kVerdicts);
}

TEST(FleetWords, LargeNumbersAreReadInThousands) {
  EXPECT_EQ(thousands(0), "0");
  EXPECT_EQ(thousands(999), "999");
  EXPECT_EQ(thousands(1000), "1,000");
  EXPECT_EQ(thousands(12'345'678), "12,345,678");
  EXPECT_EQ(counted(1, "machine"), "1 machine");
  EXPECT_EQ(counted(10'000, "machine"), "10,000 machines");
}

TEST(FleetWords, AnAddressHoldsNothingThatEndsItOrAnAttribute) {
  EXPECT_EQ(address("open", "node-1.rack_2~"), "#open=node-1.rack_2~");
  EXPECT_EQ(address("open", "a b&c=d#\"'<>"), "#open=a%20b%26c%3Dd%23%22%27%3C%3E");
  EXPECT_EQ(address("open", "\u00fc"), "#open=%C3%BC");
}

TEST(FleetWords, WhatIsSeenOfALongNameIsItsBeginning) {
  const std::string name(1'000'000, 'n');
  EXPECT_EQ(seen(name, 10), "nnnnnnnnnn \u2026 (999990 more bytes)");
  EXPECT_EQ(htmlOf("<" + name, 4), "&lt;nnn \u2026 (999997 more bytes)");
}

TEST(FleetWords, NothingStandsBetweenWhatIsEmpty) {
  EXPECT_EQ(joined({"", "a", "", "b"}), "a \u00b7 b");
  EXPECT_EQ(joined({}), "");
}

TEST(FleetWords, AValueStandsBesideThoseOfItsPeers) {
  Slow slow;
  slow.value = 2310;
  slow.median = 3480;
  slow.ratio = 2310.0 / 3480;
  slow.unit = "MB/s";
  slow.peers = 199;
  EXPECT_EQ(besidePeers(slow), "2310 MB/s, 66.4 % of the median of 199 peers, 3480 MB/s");
  slow.median = 0;
  slow.ratio = std::numeric_limits<double>::infinity();
  slow.unit.clear();
  EXPECT_EQ(besidePeers(slow), "2310 beside the median of 199 peers, 0");
}

// Catches the mean of all measurements told as that of the one whose value stands beside it.
TEST(FleetWords, OfSeveralMeasurementsThePercentageIsThatOfAllTogether) {
  Slow slow;
  slow.value = 7;
  slow.median = 10;
  slow.ratio = 0.8;
  slow.unit = "GiB/s";
  slow.peers = 29;
  slow.measurements = 20;
  EXPECT_EQ(besidePeers(slow),
            "7 GiB/s beside the median of 29 peers, 10 GiB/s; of 20 measurements the farthest off, "
            "together 80 % of the peers' speed");
  slow.ratio = std::numeric_limits<double>::infinity();
  EXPECT_EQ(besidePeers(slow),
            "7 GiB/s beside the median of 29 peers, 10 GiB/s; of 20 measurements the farthest off");
}

}  // namespace
}  // namespace fleet::page

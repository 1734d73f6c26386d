#include <gtest/gtest.h>

#include <random>

#include "fleet/peers/Direction.h"
#include "fleet/peers/Peers.h"

namespace fleet {
namespace {

struct DirectionRow {
  const char* measurement;
  const char* unit;
  Worse worse;
};

TEST(FleetDirection, IsToldByUnitAndName) {
  const DirectionRow rows[] = {
      {"bandwidth", "GiB/s", Worse::kLow},     {"x", "IOPS", Worse::kLow},
      {"clock", "MHz", Worse::kLow},           {"x", "Gbit/s", Worse::kLow},
      {"latency", "us", Worse::kHigh},         {"average latency", "ms", Worse::kHigh},
      {"duration", "", Worse::kHigh},          {"throughput", "", Worse::kLow},
      {"temperature", "C", Worse::kUnknown},   {"errors", "1/s", Worse::kUnknown},
      {"error rate", "", Worse::kUnknown},     {"size", "GiB", Worse::kUnknown},
      {"power-on time", "s", Worse::kUnknown}, {"", "", Worse::kUnknown}};
  for (const DirectionRow& row : rows) {
    EXPECT_EQ(worseOf(row.measurement, row.unit), row.worse) << row.measurement << " " << row.unit;
  }
}

TEST(FleetRobust, AThirdOfNonsenseDoesNotMoveTheMiddle) {
  std::vector<float> values;
  for (int i = 0; i < 100; ++i) values.push_back(static_cast<float>(100 + i % 5 - 2));
  for (int i = 0; i < 40; ++i) values.push_back(1e9F);
  const Spread spread = spreadOf(values, Worse::kLow);
  EXPECT_NEAR(spread.median, 101, 1.1);
  EXPECT_LT(spread.deviation, 5);
}

/// Machines with one part that is measured so often, the last ones slower.
class FleetPeers : public testing::Test {
 protected:
  void measure(std::uint32_t machines, std::uint32_t measurements, std::uint32_t slow,
               const char* unit = "GiB/s") {
    std::mt19937 random(7);
    std::normal_distribution<double> noise(1, 0.05);
    for (std::uint32_t m = 0; m < measurements; ++m) {
      m_series.push_back({m_names.numberOf("t"), 0, m_names.numberOf("m" + std::to_string(m)),
                          m_names.numberOf(unit), 0, 0});
      for (std::uint32_t i = 0; i < machines; ++i) {
        const double speed = i >= machines - slow ? 0.8 : 1;
        m_readings.push_back({i, m, static_cast<float>(100 * speed * noise(random))});
      }
    }
    m_machines = machines;
    m_slow = slow;
  }
  std::vector<Outlier> find() {
    const PeerTable table(m_series, m_names);
    return outliersAmong(m_readings, table).found;
  }
  bool isSlow(const Outlier& outlier) const { return outlier.machine >= m_machines - m_slow; }

  Names m_names;
  std::deque<Series> m_series;
  std::vector<Reading> m_readings;
  std::uint32_t m_machines = 0;
  std::uint32_t m_slow = 0;
};

TEST_F(FleetPeers, NearlyAllPartsAtFourFifthsOfTheSpeedStandOut) {
  measure(2000, 20, 40);
  std::size_t found = 0;
  std::size_t falseAlarms = 0;
  for (const Outlier& outlier : find()) (isSlow(outlier) ? found : falseAlarms) += 1;
  EXPECT_EQ(found, 40U);
  EXPECT_LE(falseAlarms, 4U);  // of 40,000 measurements, 1 in 10,000
}

TEST_F(FleetPeers, SoundPartsGiveFewerThanOneAlarmInTenThousand) {
  for (const std::uint32_t machines : {9U, 20U, 100U, 1000U}) {
    m_readings.clear();
    m_series.clear();
    measure(machines, 100'000 / machines, 0);
    EXPECT_LE(find().size(), m_readings.size() / 10'000) << machines << " machines";
  }
}

TEST_F(FleetPeers, SpeedsAndTimesOfASlowPartDoNotMakeUpForEachOther) {
  measure(500, 20, 1);
  for (std::uint32_t m = 10; m < 20; ++m) m_series[m].unit = m_names.numberOf("us");
  for (Reading& reading : m_readings) {
    const bool isTime = reading.series >= 10;
    if (isTime && reading.machine == 499) reading.value /= 0.64F;  // from 0.8 to 1.25
  }
  const std::vector<Outlier> found = find();
  ASSERT_FALSE(found.empty());
  EXPECT_EQ(found[0].machine, 499U);
  EXPECT_EQ(found[0].measurements, 20U);
  EXPECT_NEAR(found[0].ratio, 0.8, 0.02);
}

TEST_F(FleetPeers, TooFewPeersTellNothing) {
  measure(8, 20, 1);
  EXPECT_TRUE(find().empty());
}

TEST_F(FleetPeers, OneMeasurementAloneHasToBeFartherOff) {
  measure(500, 1, 0);
  m_readings[3].value = 70;
  const std::vector<Outlier> found = find();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].machine, 3U);
  EXPECT_EQ(found[0].measurements, 1U);
}

TEST_F(FleetPeers, FasterThanThePeersIsNoFault) {
  measure(500, 20, 0);
  for (Reading& reading : m_readings) {
    if (reading.machine == 3) reading.value *= 1.5F;
  }
  for (const Outlier& outlier : find()) EXPECT_NE(outlier.machine, 3U);
}

TEST_F(FleetPeers, WhatIsWorseOnNoKnownSideStandsOutOnBoth) {
  measure(500, 1, 0, "C");
  m_readings[3].value = 150;
  m_readings[4].value = 50;
  EXPECT_EQ(find().size(), 2U);
}

TEST_F(FleetPeers, ValuesThatHardlyDifferAreNeverFarApart) {
  measure(100, 1, 0);
  for (Reading& reading : m_readings) reading.value = 100;
  m_readings[0].value = 96;
  m_readings[1].value = 80;
  const std::vector<Outlier> found = find();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].machine, 1U);
}

TEST_F(FleetPeers, AmongZerosNothingHasADistance) {
  measure(100, 1, 0);
  for (Reading& reading : m_readings) reading.value = 0;
  m_readings[0].value = 5;
  EXPECT_TRUE(find().empty());
}

}  // namespace
}  // namespace fleet

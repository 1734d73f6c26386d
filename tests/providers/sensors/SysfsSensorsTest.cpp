#include <gtest/gtest.h>

#include "providers/sensors/chips/Chips.h"
#include "providers/sensors/finding/SysfsSensors.h"
#include "tests/providers/LinkedTree.h"

namespace providers::sensors {
namespace {

struct Machine : LinkedTree {
  Machine& chip(const std::string& file, const std::string& content) {
    add("class/hwmon/hwmon0/" + file, content + "\n");
    return *this;
  }
  Machine& zone(const std::string& file, const std::string& content) {
    add("class/thermal/thermal_zone0/" + file, content + "\n");
    return *this;
  }
  Sensor only() const {
    const auto all = readChips(root());
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? Sensor() : all.front();
  }
};

TEST(SysfsSensors, AMachineWithoutAnyHasNone) {
  EXPECT_FALSE(hasSensors("/nowhere"));
  EXPECT_TRUE(readChips("/nowhere").empty());
  EXPECT_TRUE(readZones("/nowhere").empty());
  Machine machine;
  machine.chip("name", "empty");
  machine.add("class/thermal/cooling_device0/type", "Processor\n");
  EXPECT_FALSE(hasSensors(machine.root()));
}

TEST(SysfsSensors, AChipsTemperatureComesWithItsLimits) {
  Machine machine;
  machine.chip("name", "coretemp").chip("temp1_input", "45500").chip("temp1_label", "Package id 0");
  machine.chip("temp1_max", "80000").chip("temp1_crit", "100000").chip("temp1_crit_alarm", "1");
  machine.link("class/hwmon/hwmon0/device", "../../../devices/coretemp.0");
  machine.add("devices/coretemp.0/x", "");
  EXPECT_TRUE(hasSensors(machine.root()));
  const Sensor sensor = machine.only();
  EXPECT_EQ(describe(sensor), "coretemp (coretemp.0), Package id 0");
  EXPECT_EQ(sensor.value, 45.5);
  EXPECT_EQ(sensor.limits.high, 80);
  EXPECT_EQ(sensor.limits.highCritical, 100);
  EXPECT_TRUE(sensor.criticalAlarm);
  EXPECT_FALSE(sensor.alarm);
  EXPECT_FALSE(sensor.fault);
}

struct KindRow {
  const char* prefix;
  const char* input;
  Kind kind;
  double value;
};

class EachKind : public ::testing::TestWithParam<KindRow> {};

TEST_P(EachKind, HasItsOwnUnit) {
  Machine machine;
  machine.chip("name", "board").chip(GetParam().prefix + std::string("3_input"), GetParam().input);
  EXPECT_TRUE(hasSensors(machine.root()));
  const Sensor sensor = machine.only();
  EXPECT_EQ(sensor.kind, GetParam().kind);
  EXPECT_EQ(sensor.value, GetParam().value);
  EXPECT_EQ(sensor.label, GetParam().prefix + std::string("3"));
}

INSTANTIATE_TEST_SUITE_P(All, EachKind,
                         ::testing::Values(KindRow{"temp", "-5000", Kind::Temperature, -5},
                                           KindRow{"fan", "1200", Kind::Fan, 1200},
                                           KindRow{"in", "11952", Kind::Voltage, 11.952},
                                           KindRow{"curr", "1500", Kind::Current, 1.5},
                                           KindRow{"power", "65000000", Kind::Power, 65},
                                           KindRow{"humidity", "40000", Kind::Humidity, 40}),
                         [](const auto& row) { return std::string(row.param.prefix); });

TEST(SysfsSensors, ComeInTheOrderOfTheirNumbersAndWithoutThoseThatAreOff) {
  Machine machine;
  for (const char* input : {"temp10_input", "temp2_input", "temp3_input", "intrusion0_alarm",
                            "in0_input", "tempx_input", "temp_input"})
    machine.chip(input, "1000");
  machine.chip("temp3_enable", "0");
  std::vector<std::string> labels;
  for (const Sensor& sensor : readChips(machine.root())) labels.push_back(sensor.label);
  EXPECT_EQ(labels, (std::vector<std::string>{"temp2", "temp10", "in0"}));
}

TEST(SysfsSensors, ThatCannotBeReadHaveNoValue) {
  for (const char* text : {"", "hot", "12 34", "99999999999999999999999"}) {
    Machine machine;
    EXPECT_EQ(machine.chip("temp1_input", text).only().value, std::nullopt) << text;
  }
  Machine machine;
  machine.add("class/hwmon/hwmon0/temp1_input/x", "");  // a folder: not to be read
  EXPECT_EQ(machine.only().value, std::nullopt);
}

TEST(SysfsSensors, HostileNamesAreMadePrintable) {
  Machine machine;
  machine.chip("name", "\x1b[2Jchip").chip("temp1_label", "a\x07\xff").chip("temp1_input", "1");
  EXPECT_EQ(describe(machine.only()), "[2Jchip, a");
}

// Catches a healthy board that warns of inputs whose limits its firmware has left at zero.
TEST(SysfsSensors, AlarmsAboutLimitsThatNobodyHasSetAreNone) {
  Machine unset;
  unset.chip("in1_input", "1024").chip("in1_min", "0").chip("in1_max", "0").chip("in1_alarm", "1");
  EXPECT_FALSE(unset.only().alarm);
  Machine set;
  set.chip("in1_input", "1024").chip("in1_min", "900").chip("in1_max", "1000");
  EXPECT_TRUE(set.chip("in1_alarm", "1").only().alarm);
  Machine untold;
  EXPECT_TRUE(untold.chip("in1_input", "1024").chip("in1_alarm", "1").only().alarm);
  Machine hot;
  hot.chip("temp1_input", "40000").chip("temp1_crit", "0").chip("temp1_crit_alarm", "1");
  EXPECT_FALSE(hot.only().criticalAlarm);
}

struct NonsenseRow {
  const char* name;
  Kind kind;
  Limits limits;
};

class NonsenseLimits : public ::testing::TestWithParam<NonsenseRow> {};

TEST_P(NonsenseLimits, AreDropped) {
  Sensor sensor;
  sensor.kind = GetParam().kind;
  sensor.limits = GetParam().limits;
  dropNonsense(sensor);
  EXPECT_FALSE(hasLimits(sensor));
}

INSTANTIATE_TEST_SUITE_P(
    Each, NonsenseLimits,
    ::testing::Values(NonsenseRow{"Zeros", Kind::Temperature, {0, 0, 0, 0}},
                      NonsenseRow{"EndsOfRegisters", Kind::Temperature, {-128, -127, 255.5, 65261}},
                      NonsenseRow{"NoVoltage", Kind::Voltage, {0, 0, 0, 0}},
                      NonsenseRow{"VoltagesUpsideDown", Kind::Voltage, {{}, 3, 2, {}}},
                      NonsenseRow{"FanWithoutLeast", Kind::Fan, {{}, 0, {}, {}}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(SysfsSensors, NegativeVoltagesKeepTheirLimits) {
  Machine machine;
  machine.chip("in5_input", "-12000").chip("in5_min", "-13200").chip("in5_max", "-10800");
  EXPECT_EQ(machine.only().limits.low, -13.2);
  EXPECT_EQ(machine.only().limits.high, -10.8);
}

TEST(ThermalZones, HaveTheirLimitsAmongTheirTripPoints) {
  Machine machine;
  machine.zone("type", "acpitz").zone("temp", "27800");
  machine.zone("trip_point_0_type", "passive").zone("trip_point_0_temp", "60000");
  machine.zone("trip_point_1_type", "hot").zone("trip_point_1_temp", "95000");
  machine.zone("trip_point_2_type", "critical").zone("trip_point_2_temp", "105000");
  EXPECT_TRUE(hasSensors(machine.root()));
  const Sensor sensor = readZones(machine.root()).at(0);
  EXPECT_EQ(describe(sensor), "thermal_zone0, acpitz");
  EXPECT_EQ(sensor.value, 27.8);
  EXPECT_EQ(sensor.limits.high, 95);
  EXPECT_EQ(sensor.limits.highCritical, 105);
  EXPECT_EQ(sensor.limits.low, std::nullopt);
}

TEST(ThermalZones, ThatAreChipsTooAreReadOnce) {
  Machine machine;
  machine.zone("type", "soc-thermal").zone("temp", "1000");
  machine.chip("name", "soc_thermal");
  EXPECT_TRUE(readZones(machine.root()).empty());
}

TEST(SensorChips, AreReadOfTheSystemsFilesWhereTheModuleIsNot) {
  Machine machine;
  machine.chip("name", "board").chip("temp1_input", "21000");
  const ChipReader chips = openChips("/nowhere", machine.root());
  EXPECT_EQ(chips.name, "the system's files, since /nowhere/libdiagsSensorsChips.so is not there");
  EXPECT_EQ(chips.read().at(0).value, 21);
}

}  // namespace
}  // namespace providers::sensors

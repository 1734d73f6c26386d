#include <gtest/gtest.h>

#include "reports/metrics/BaseUnit.h"

namespace reports {
namespace {

struct UnitRow {
  const char* name;
  const char* unit;
  const char* suffix;
  double value;
  double converted;
};

class Units : public testing::TestWithParam<UnitRow> {};

TEST_P(Units, BecomeBaseUnits) {
  const BaseUnit unit = baseUnitOf(GetParam().unit);
  EXPECT_EQ(unit.suffix, GetParam().suffix);
  EXPECT_DOUBLE_EQ(unit.of(GetParam().value), GetParam().converted);
}

const UnitRow kKnown[] = {
    {"Seconds", "s", "seconds", 10.604, 10.604},
    {"Milliseconds", "ms", "seconds", 35, 0.035},
    {"Microseconds", "\xC2\xB5s", "seconds", 5, 5e-6},
    {"MicrosecondsByTheLetter", "\xCE\xBCs", "seconds", 5, 5e-6},
    {"Nanoseconds", "ns", "seconds", 5, 5e-9},
    {"Minutes", "min", "seconds", 2, 120},
    {"Hours", "h", "seconds", 2, 7200},
    {"Bytes", "B", "bytes", 7, 7},
    {"Mebibytes", "MiB", "bytes", 2, 2097152},
    {"Megabytes", "MB", "bytes", 2, 2e6},
    {"Kilobytes", "kB", "bytes", 2, 2000},
    {"GibibytesPerSecond", "GiB/s", "bytes_per_second", 11.25, 12079595520},
    {"TerabytesPerSecond", "TB/s", "bytes_per_second", 1, 1e12},
    {"MegabitsPerSecond", "Mbit/s", "bytes_per_second", 1000, 1.25e8},
    {"Transfers", "GT/s", "transfers_per_second", 8, 8e9},
    {"Celsius", "degree C", "celsius", 36.6, 36.6},
    {"CelsiusBySign",
     "\xC2\xB0"
     "C",
     "celsius", -5, -5},
    {"Fahrenheit", "degree F", "celsius", 212, 100},
    {"Kelvin", "K", "celsius", 273.15, 0},
    {"Percent", "%", "ratio", 93, 0.93},
    {"TurnsPerMinute", "1/min", "rpm", 1200, 1200},
    {"Rpm", "RPM", "rpm", 1200, 1200},
    {"PerSecond", "1/s", "per_second", 4.5, 4.5},
    {"Iops", "IOPS", "per_second", 4, 4},
    {"Gigahertz", "GHz", "hertz", 2.5, 2.5e9},
    {"Millivolts", "mV", "volts", 1200, 1.2},
    {"Amperes", "A", "amperes", 3, 3},
    {"Kilowatts", "kW", "watts", 1, 1000},
    {"Joules", "J", "joules", 1, 1},
};
INSTANTIATE_TEST_SUITE_P(Known, Units, testing::ValuesIn(kKnown),
                         [](const auto& row) { return std::string(row.param.name); });

const UnitRow kOthers[] = {
    {"None", "", "", 5, 5},
    {"Furlongs", "furlong", "", 5, 5},
    {"APrefixAlone", "Gi", "", 5, 5},
    {"SmallPrefixOfData", "mB", "", 5, 5},
    {"BinaryPrefixOfVolts", "KiV", "", 5, 5},
    {"LargePrefixOfSeconds", "Ms", "", 5, 5},
    {"TwoPrefixes", "kkB", "", 5, 5},
    {"AWordThatEndsLikeASymbol", "pixels", "", 5, 5},
    {"NoUtf8", "\xFFs", "", 5, 5},
    {"Markup", "\"} 1\n", "", 5, 5},
};
INSTANTIATE_TEST_SUITE_P(Others, Units, testing::ValuesIn(kOthers),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace reports

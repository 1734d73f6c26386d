#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

#include "engine/worker/model/Measurements.h"

namespace engine::worker {
namespace {

/// `name=value unit [minimum..maximum] on part`, one a line, with what is there.
std::string shown(const std::vector<Measurement>& measurements) {
  std::ostringstream text;
  for (const Measurement& one : measurements) {
    text << one.name << "=";
    std::visit([&text](const auto& value) { text << std::boolalpha << value; }, one.value);
    if (!one.unit.empty()) text << " " << one.unit;
    if (one.minimum) text << " from " << *one.minimum;
    if (one.maximum) text << " to " << *one.maximum;
    if (!one.part.empty()) text << " on " << one.part;
    text << "\n";
  }
  return text.str();
}

struct Good {
  const char* name;
  const char* format;
  const char* data;
  const char* wanted;
};
void PrintTo(const Good& row, std::ostream* stream) { *stream << row.name; }

class GoodRecord : public testing::TestWithParam<Good> {};

TEST_P(GoodRecord, IsRead) {
  const RecordReading reading = readMeasurements(GetParam().format, GetParam().data);
  EXPECT_EQ(reading.error, "");
  EXPECT_EQ(shown(reading.measurements), GetParam().wanted);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, GoodRecord,
    testing::Values(
        Good{"free text", "", "Tested 3 fans", ""}, Good{"a blank format", "  ", "text", ""},
        Good{"one of each kind",
             "*string TestName*uint32 BlocksTested*boolean Hot*real64 Speed*datetime Finished",
             "*Sequential Read*8192*TRUE*-1.5e2*20240131120000.000000+060",
             "TestName=Sequential Read\nBlocksTested=8192\nHot=true\nSpeed=-150\n"
             "Finished=20240131120000.000000+060\n"},
        Good{"units and limits in any order and case",
             "|real32 SPEEDMAXIMUM|string speedunits|uint16 Speed|sint8 SpeedMinimum",
             "|1000|1/min|900|-1", "Speed=900 1/min from -1 to 1000\n"},
        Good{"a part for all", "|string Part|uint8 A|uint8 B", "|Front Fan|1|2",
             "A=1 on Front Fan\nB=2 on Front Fan\n"},
        Good{"missing values at the end", "|uint8 A|uint8 B|uint8 C", "|1", "A=1\n"},
        Good{"an empty value is null", "|uint8 A|uint8 B", "||2", "B=2\n"},
        Good{"no data at all", "|uint8 A", "", ""},
        Good{"a limit without a value is none", "|uint8 A|uint8 AMaximum", "|1|", "A=1\n"},
        Good{"a delimiter at the end of both", "|uint8 A|", "|1|", "A=1\n"},
        Good{"blanks around everything", "| uint8   A \t| string B ", "| 1 |two ", "A=1\nB=two \n"},
        Good{"a delimiter beyond ASCII", "\u00a7uint8 A\u00a7uint8 B", "\u00a71\u00a72",
             "A=1\nB=2\n"},
        Good{"an array is text", "|uint8 A[]|string AUnits", "|{1,2}|V", "A={1,2} V\n"},
        Good{"what looks like a limit of a text is a measurement", "|string A|uint8 AMinimum",
             "|x|3", "A=x\nAMinimum=3\n"},
        Good{"units of nothing are a measurement", "|string BUnits", "|V", "BUnits=V\n"},
        Good{"units that are a number are one", "|uint8 A|uint8 AUnits", "|1|2", "A=1\nAUnits=2\n"},
        Good{"a part that is a number is one", "|uint8 Part", "|1", "Part=1\n"},
        Good{"the largest and the least",
             "|uint8 A|uint16 B|uint32 C|sint8 D|sint8 E|sint16 F|sint32 G|sint64 H",
             "|255|65535|4294967295|127|-128|-32768|-2147483648|-9007199254740992",
             "A=255\nB=65535\nC=4.29497e+09\nD=127\nE=-128\nF=-32768\nG=-2.14748e+09\n"
             "H=-9.0072e+15\n"},
        Good{"types in any case, with a plus sign", "|UINT8 A|Real64 B", "|+1|+0.5",
             "A=1\nB=0.5\n"}));

struct Bad {
  const char* name;
  const char* format;
  const char* data;
  const char* error;
};
void PrintTo(const Bad& row, std::ostream* stream) { *stream << row.name; }

class BadRecord : public testing::TestWithParam<Bad> {};

TEST_P(BadRecord, IsRefusedWithThePlace) {
  const RecordReading reading = readMeasurements(GetParam().format, GetParam().data);
  EXPECT_EQ(reading.error, GetParam().error);
  EXPECT_TRUE(reading.measurements.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BadRecord,
    testing::Values(
        Bad{"no delimiter", "uint8 A", "1", "the format does not begin with a delimiter"},
        Bad{"a blank as delimiter", " uint8 A", " 1", "the format does not begin with a delimiter"},
        Bad{"nothing but a delimiter", "|", "|", "declaration 1 is no type and name: "},
        Bad{"no name", "|uint8 A|uint8", "|1|2", "declaration 2 is no type and name: uint8"},
        Bad{"no declaration between two", "|uint8 A||uint8 B", "|1|2|3",
            "declaration 2 is no type and name: "},
        Bad{"an unknown type", "|float A", "|1", "declaration 1 has an unknown type: float"},
        Bad{"a name of two words", "|uint8 A B", "|1",
            "declaration 1 has more than a type and a name: uint8 A B"},
        Bad{"a name of brackets alone", "|uint8 []", "|1",
            "declaration 1 has more than a type and a name: uint8 []"},
        Bad{"a name twice", "|uint8 A|uint8 a", "|1|2", "declaration 2 is there twice: a"},
        Bad{"another delimiter in the data", "|uint8 A", "*1",
            "the data do not begin with the delimiter of the format"},
        Bad{"free text in the data", "|uint8 A", "passed",
            "the data do not begin with the delimiter of the format"},
        Bad{"a value too many", "|uint8 A", "|1|2", "value 2 has no declaration: 2"},
        Bad{"text for a number", "|uint8 A", "|one", "value 1, of A, is no uint8: one"},
        Bad{"a number with something behind it", "|real64 A", "|1.5 V",
            "value 1, of A, is no real64: 1.5 V"},
        Bad{"too large", "|uint8 A|uint16 B", "|1|65536", "value 2, of B, is no uint16: 65536"},
        Bad{"too small", "|sint8 A", "|-129", "value 1, of A, is no sint8: -129"},
        Bad{"negative", "|uint64 A", "|-1", "value 1, of A, is no uint64: -1"},
        Bad{"beyond 64 bits", "|uint64 A", "|18446744073709551616",
            "value 1, of A, is no uint64: 18446744073709551616"},
        Bad{"no number", "|real64 A", "|nan", "value 1, of A, is no real64: nan"},
        Bad{"an infinite one", "|real64 A", "|inf", "value 1, of A, is no real64: inf"},
        Bad{"beyond all reals", "|real64 A", "|1e999", "value 1, of A, is no real64: 1e999"},
        Bad{"two signs", "|real64 A", "|+-1", "value 1, of A, is no real64: +-1"},
        Bad{"a comma", "|real64 A", "|1,5", "value 1, of A, is no real64: 1,5"},
        Bad{"a number for a boolean", "|boolean A", "|1", "value 1, of A, is no boolean: 1"},
        Bad{"a limit that is text", "|uint8 A|uint8 AMaximum", "|1|many",
            "value 2, of AMaximum, is no uint8: many"}));

// Catches a message as long as what it complains of, or one that ends within a character.
TEST(MeasurementsOfHugeTexts, AreRefusedInAShortMessage) {
  std::string name(59, 'x');
  for (int i = 0; i < 1000000; ++i) name += "\u00e4";
  const RecordReading reading = readMeasurements("|uint8 " + name, "|" + name);
  EXPECT_EQ(reading.error, "value 1, of " + std::string(59, 'x') +
                               "..., is no uint8: " + std::string(59, 'x') + "...");
}

// Catches a search through all declarations for each of them.
TEST(MeasurementsOfHugeTexts, AreReadInTheirOrder) {
  std::string format, data;
  for (int i = 0; i < 200000; ++i) {
    format += "|uint32 A" + std::to_string(i);
    data += "|" + std::to_string(i);
  }
  const RecordReading reading = readMeasurements(format, data);
  ASSERT_EQ(reading.measurements.size(), 200000U);
  EXPECT_EQ(reading.measurements.back().name, "A199999");
  EXPECT_EQ(std::get<double>(reading.measurements.back().value), 199999);
}

TEST(MeasurementsOfCutTexts, NeverFail) {
  const std::string format = "\u00a7string Part\u00a7real64 A\u00a7string AUnits",
                    data = "\u00a7f\u00a71\u00a7V";
  for (std::size_t i = 0; i <= format.size(); ++i) {
    for (std::size_t j = 0; j <= data.size(); ++j)
      readMeasurements(std::string_view(format).substr(0, i), std::string_view(data).substr(0, j));
  }
}

}  // namespace
}  // namespace engine::worker

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "reports/metrics/Exposition.h"

namespace reports {
namespace {

struct LabelRow {
  const char* name;
  std::string text;
  std::string quoted;
};

class LabelTexts : public testing::TestWithParam<LabelRow> {};

TEST_P(LabelTexts, AreOneLineInQuotes) {
  EXPECT_EQ(quotedLabel(labelText(GetParam().text)), GetParam().quoted);
}

const LabelRow kLabelRows[] = {
    {"Plain", "DIMM_A2", R"("DIMM_A2")"},
    {"Empty", "", R"("")"},
    {"Quotes", R"(a"b\c)", R"("a\"b\\c")"},
    {"Braces", "a{b=\"c\"} 1", R"("a{b=\"c\"} 1")"},
    {"Breaks", "a\r\nb", R"("a\\x0d\\x0ab")"},
    {"Controls", std::string("\0\x1b", 2), R"("\\x00\\x1b")"},
    {"C1AndDelete", "\x7f\xC2\x9B", R"("\\x7f\\u009b")"},
    {"Direction", "\xE2\x80\xAEgpj", R"("\\u202egpj")"},
    {"NoUtf8", "\xFFz", R"("\\xffz")"},
    {"OtherWritings", "\xE6\xB8\xAC", "\"\xE6\xB8\xAC\""},
    {"AsLongAsMayBe", std::string(200, 'x'), "\"" + std::string(200, 'x') + "\""},
    {"Longer", std::string(201, 'x'), "\"" + std::string(197, 'x') + "...\""},
    {"VeryLong", std::string(10'000'000, 'x'), "\"" + std::string(197, 'x') + "...\""},
};
INSTANTIATE_TEST_SUITE_P(All, LabelTexts, testing::ValuesIn(kLabelRows),
                         [](const auto& row) { return std::string(row.param.name); });

// Catches a character cut in half, which the reader of the file would refuse the whole of it for.
TEST(LabelTexts, AreCutBetweenCharacters) {
  std::string text = "x";
  for (int i = 0; i < 100; ++i) text += "\xF0\x9F\x92\xA5";
  const std::string cut = labelText(text);
  EXPECT_EQ(cut, text.substr(0, 197) + "...");
}

TEST(MetricNumbers, AreWrittenAsTheFormatHasThem) {
  EXPECT_EQ(metricNumber(0), "0");
  EXPECT_EQ(metricNumber(0.1), "0.1");
  EXPECT_EQ(metricNumber(1795376926.263641), "1795376926.263641");
  EXPECT_EQ(metricNumber(std::nan("")), "NaN");
  EXPECT_EQ(metricNumber(std::numeric_limits<double>::infinity()), "+Inf");
  EXPECT_EQ(metricNumber(-std::numeric_limits<double>::infinity()), "-Inf");
}

TEST(MetricNumbers, AreReadBackTheSame) {
  for (const double value : {1e300, 2.5e-300, 12079595520.0, 0.30000000000000004}) {
    EXPECT_EQ(std::stod(metricNumber(value)), value);
  }
}

TEST(LabelSets, KeepTheirOrder) {
  EXPECT_EQ(labelSet({{"b", "1"}, {"a", "2"}}), R"({b="1",a="2"})");
  EXPECT_EQ(labelSet({}), "");
}

}  // namespace
}  // namespace reports

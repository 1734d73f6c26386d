#include <gtest/gtest.h>

#include <limits>

#include "reports/html/Plots.h"
#include "reports/html/Series.h"

namespace reports::html {
namespace {

engine::Measurement measured(engine::MeasuredValue value, std::optional<double> minimum = {},
                             std::optional<double> maximum = {}) {
  return {"Temperature", std::move(value), "C", minimum, maximum, "cpu0"};
}

Series seriesOf(std::size_t count) {
  Series series(measured(0.0));
  for (std::size_t i = 1; i < count; ++i) series.add(measured(static_cast<double>(i)));
  return series;
}

std::uint64_t valuesIn(const Series& series) {
  std::uint64_t count = 0;
  for (const Series::Place& place : series.places()) count += place.count;
  return count;
}

TEST(HtmlSeries, StaysSmallAndLosesNoValue) {
  const Series series = seriesOf(1'000'003);
  EXPECT_LE(series.places().size(), 240U);
  EXPECT_GE(series.places().size(), 120U);
  EXPECT_EQ(valuesIn(series), 1'000'003U);
  EXPECT_EQ(series.least(), 0);
  EXPECT_EQ(series.most(), 1'000'002);
}

TEST(HtmlSeries, KeepsItsOrder) {
  const Series series = seriesOf(10'000);
  for (std::size_t i = 1; i < series.places().size(); ++i) {
    EXPECT_LT(series.places()[i - 1].most, series.places()[i].least);
  }
}

TEST(HtmlSeries, AnOutlierAmongManyIsSeen) {
  Series series(measured(50.0, {}, 95.0));
  for (int i = 0; i < 5000; ++i) series.add(measured(i == 2500 ? 99.0 : 50.0, {}, 95.0));
  EXPECT_EQ(series.outside(), 1U);
  EXPECT_EQ(series.most(), 99);
  EXPECT_NE(plot(series).find("<circle class=\"out\""), std::string::npos);
}

struct LimitRow {
  const char* name;
  engine::Measurement measurement;
  bool isBeyond;
};

const double kNoNumber = std::numeric_limits<double>::quiet_NaN();

const LimitRow kLimits[] = {
    {"no limits", measured(5.0), false},
    {"at the least", measured(1.0, 1.0, 2.0), false},
    {"at the most", measured(2.0, 1.0, 2.0), false},
    {"below", measured(0.9, 1.0, 2.0), true},
    {"above", measured(2.1, {}, 2.0), true},
    {"no number", measured(kNoNumber, 1.0, {}), true},
    {"a truth", measured(true, 1.0, 2.0), false},
    {"a text", measured(std::string("5"), 1.0, 2.0), false},
};

TEST(HtmlSeries, LimitsBelongToWhatIsAllRight) {
  for (const LimitRow& row : kLimits) {
    EXPECT_EQ(isBeyondLimits(row.measurement), row.isBeyond) << row.name;
  }
}

struct PlotRow {
  const char* name;
  std::vector<engine::Measurement> values;
  const char* part;  ///< of the picture; empty where there is none
};

const PlotRow kPlots[] = {
    {"one value", {measured(1.0)}, ""},
    {"a text", {measured(std::string("x"), 1.0, 2.0)}, ""},
    {"no number", {measured(kNoNumber, 1.0, 2.0)}, ""},
    {"one value with a limit", {measured(1.0, 0.0, {})}, "plot bullet"},
    {"one beyond it", {measured(-1.0, 0.0, {})}, "class=\"value out\""},
    {"two values", {measured(1.0), measured(2.0)}, "plot curve"},
    {"two with a limit", {measured(1.0, {}, 3.0), measured(2.0, {}, 3.0)}, "<line class=\"limit\""},
    {"all the same", {measured(7.0), measured(7.0)}, "22.00"},
    {"as far apart as can be", {measured(-1.7e308), measured(1.7e308)}, "plot curve"},
};

// A picture with a coordinate that is no number is not drawn, and the console complains.
TEST(HtmlPlots, AreDrawnWhereThereIsSomethingToSee) {
  for (const PlotRow& row : kPlots) {
    Series series(row.values.front());
    for (std::size_t i = 1; i < row.values.size(); ++i) series.add(row.values[i]);
    const std::string picture = plot(series);
    EXPECT_EQ(picture.empty(), *row.part == '\0') << row.name;
    EXPECT_NE(picture.find(row.part), std::string::npos) << row.name << ": " << picture;
    EXPECT_EQ(picture.find("nan"), std::string::npos) << row.name;
    EXPECT_EQ(picture.find("inf"), std::string::npos) << row.name;
  }
}

TEST(HtmlPlots, SayInWordsWhatTheyShow) {
  Series series(measured(61.5, {}, 95.0));
  EXPECT_NE(plot(series).find("<title>Temperature: 61.5 C; allowed: at most 95 C</title>"),
            std::string::npos);
}

}  // namespace
}  // namespace reports::html

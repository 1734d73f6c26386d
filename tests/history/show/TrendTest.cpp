#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "history/show/TrendPicture.h"
#include "history/show/TrendPlot.h"
#include "history/show/TrendScale.h"
#include "tests/history/HistoryFixture.h"

namespace history {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

Trend trendOf(const std::vector<double>& values) {
  Trend trend{"A,a,a", "read", "sda", "MB/s", {}, {}, {}};
  for (const double value : values) {
    const auto minutes = std::chrono::minutes(trend.points.size());
    trend.points.push_back({"run", firstTime() + minutes, 1, value, value, value});
  }
  return trend;
}

std::string plotOf(const Trend& trend, const PlotOptions& options) {
  std::ostringstream stream;
  writePlot(stream, trend, options);
  return stream.str();
}

std::string figuresOf(const Trend& trend) {
  std::ostringstream stream;
  writeFigures(stream, {trend});
  return stream.str();
}

TEST(TrendScaleTest, GoesFromTheLeastToTheGreatest) {
  const TrendScale scale(trendOf({5, 3, 7}));
  EXPECT_EQ(scale.heightOf(3), 0);
  EXPECT_EQ(scale.heightOf(5), 0.5);
  EXPECT_EQ(scale.heightOf(7), 1);
  EXPECT_EQ(scale.heightOf(9), 1);
}

TEST(TrendScaleTest, TakesInALimitThatIsNearAndNoneThatIsFar) {
  Trend trend = trendOf({100, 110});
  trend.minimum = 90;
  trend.maximum = 1'000'000;
  const TrendScale scale(trend);
  EXPECT_EQ(scale.low, 90);
  EXPECT_EQ(scale.high, 110);
  EXPECT_TRUE(scale.shows(trend.minimum));
  EXPECT_FALSE(scale.shows(trend.maximum));
}

TEST(TrendScaleTest, ValuesThatNeverChangeLieInTheMiddle) {
  for (const double value : {0.0, 5.0, -5.0, 1e300}) {
    EXPECT_NEAR(TrendScale(trendOf({value, value})).heightOf(value), 0.5, 1e-6) << value;
  }
}

// Catches an axis from -1e-09 to 1e-09 for a count of errors that is none.
TEST(TrendScaleTest, NoughtAllTheTimeLiesBetweenWholeNumbers) {
  const TrendScale scale(trendOf({0, 0}));
  EXPECT_EQ(scale.low, -1);
  EXPECT_EQ(scale.high, 1);
}

TEST(TrendScaleTest, TheLargestNumbersHaveHeightsTooAndNoneIsNoNumber) {
  const double most = std::numeric_limits<double>::max();
  const TrendScale scale(trendOf({-most, most}));
  EXPECT_EQ(scale.heightOf(-most), 0);
  EXPECT_EQ(scale.heightOf(0), 0.5);
  EXPECT_EQ(scale.heightOf(most), 1);
  EXPECT_EQ(scale.heightOf(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(TrendScaleTest, ManyPointsArePutTogetherAndFewStay) {
  EXPECT_THAT(means(trendOf({1, 3, 5, 7}), 2), ElementsAre(2, 6));
  EXPECT_THAT(means(trendOf({1, 3}), 5), ElementsAre(1, 3));
  EXPECT_THAT(means(trendOf({}), 5), IsEmpty());
}

TEST(TrendPlotTest, DrawsInPlainCharacters) {
  PlotOptions options;
  options.columns = 20;
  options.lines = 3;
  options.usesBraille = false;
  Trend trend = trendOf({5, 3, 7});
  trend.minimum = 3;
  EXPECT_EQ(plotOf(trend, options),
            "A,a,a: read of sda, in MB/s, 3 runs\n"
            "  all right: at least 3\n"
            " 7 |               *\n"
            "   |*\n"
            " 3 |-  -  -* -  -  -\n"
            "    2026-11-22 01:30:00 to 2026-11-22 01:32:00 (UTC)\n");
}

TEST(TrendPlotTest, DrawsFinerInBraille) {
  PlotOptions options;
  options.columns = 13;
  options.lines = 1;
  EXPECT_EQ(plotOf(trendOf({0, 1, 2, 3}), options),
            "A,a,a: read of sda, in MB/s, 4 runs\n"
            " 3 |⡀ ⠠  ⠐  ⠈\n"
            "    2026-11-22 01:30:00 to 2026-11-22 01:33:00 (UTC)\n");
}

TEST(TrendPlotTest, OfNoRunsThereIsOnlyTheHeading) {
  EXPECT_EQ(plotOf(trendOf({}), {}), "A,a,a: read of sda, in MB/s, 0 runs\n");
}

TEST(TrendPlotTest, StaysOnANarrowTerminalAndActsOnNone) {
  PlotOptions options;
  options.columns = 1;
  Trend trend = trendOf(std::vector<double>(10'000, 1e-300));
  trend.test = trend.name = trend.part = trend.unit = "\x1b[2J\n";
  const std::string plot = plotOf(trend, options);
  EXPECT_THAT(plot, Not(HasSubstr("\x1b")));
  EXPECT_EQ(std::count(plot.begin(), plot.end(), '\n'), 10);
}

TEST(TrendPictureTest, HasACurveLimitsAndADotARun) {
  Trend trend = trendOf({5, 3, 7});
  trend.maximum = 8;
  EXPECT_EQ(
      svgOf(trend),
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 640.0 200.0\" role=\"img\" "
      "width=\"100%\">\n"
      "<title>A,a,a: read of sda, in MB/s</title>\n"
      "<line x1=\"56.0\" x2=\"640.0\" y1=\"8.0\" y2=\"8.0\" stroke=\"currentColor\" "
      "stroke-dasharray=\"6 4\" opacity=\"0.6\"><title>limit 8</title></line>\n"
      "<text x=\"48.0\" y=\"12.0\" text-anchor=\"end\" font-size=\"11\" fill=\"currentColor\" "
      "opacity=\"0.6\">8</text>\n"
      "<text x=\"48.0\" y=\"196.0\" text-anchor=\"end\" font-size=\"11\" "
      "fill=\"currentColor\" opacity=\"0.6\">3</text>\n"
      "<polyline fill=\"none\" stroke=\"currentColor\" stroke-width=\"1.5\" "
      "points=\"56.0,118.4 344.0,192.0 632.0,44.8\"/>\n"
      "<circle cx=\"56.0\" cy=\"118.4\" r=\"3\" fill=\"currentColor\"><title>run: 5 "
      "MB/s</title></circle>\n"
      "<circle cx=\"344.0\" cy=\"192.0\" r=\"3\" fill=\"currentColor\"><title>run: 3 "
      "MB/s</title></circle>\n"
      "<circle cx=\"632.0\" cy=\"44.8\" r=\"3\" fill=\"currentColor\"><title>run: 7 "
      "MB/s</title></circle>\n"
      "</svg>\n");
}

TEST(TrendPictureTest, IsAFigureWithItsRange) {
  EXPECT_THAT(figuresOf(trendOf({5, 3})),
              HasSubstr("<figcaption>A,a,a: read of sda, in MB/s</figcaption>"));
  EXPECT_THAT(figuresOf(trendOf({5, 3})),
              HasSubstr("<p>2 runs: 3 to 5, the last 3; 2026-11-22 01:30:00 to 2026-11-22 01:31:00 "
                        "(UTC)</p>"));
}

// Catches the ends of the scale being told for what was measured.
TEST(TrendPictureTest, OneRunIsOneValueWithItsLimits) {
  Trend trend = trendOf({5});
  trend.minimum = 1;
  trend.maximum = 9;
  EXPECT_THAT(figuresOf(trend), HasSubstr("<p>1 run: 5; 2026-11-22 01:30:00 (UTC); all right: at "
                                          "least 1 and at most 9</p>"));
}

TEST(TrendPictureTest, APageIsWholeAndNamesWhatIsShown) {
  std::ostringstream stream;
  writeTrendPage(stream, "<A>\x1b", {trendOf({5, 3})});
  const std::string page = stream.str();
  EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0U);
  EXPECT_THAT(page, HasSubstr("<h1>Measurements of &lt;A&gt;\\x1b over the runs</h1>"));
  EXPECT_THAT(page, HasSubstr("<figcaption>A,a,a: read of sda, in MB/s</figcaption>"));
  EXPECT_EQ(page.substr(page.size() - 8), "</html>\n");
}

TEST(TrendPictureTest, StaysSmallHoweverManyRunsThereAre) {
  EXPECT_LT(svgOf(trendOf(std::vector<double>(100'000, 5))).size(), 20'000U);
}

TEST(TrendPictureTest, NothingOfItIsMarkupButItsOwn) {
  Trend trend = trendOf({5});
  trend.test = trend.name = trend.part = trend.unit = "</title><script>\"'&\x1b\xff";
  trend.points[0].run = "<b>";
  const std::string page = figuresOf(trend);
  EXPECT_THAT(page, Not(HasSubstr("<script>")));
  EXPECT_THAT(page, Not(HasSubstr("<b>")));
  EXPECT_THAT(page, Not(HasSubstr("\x1b")));
  EXPECT_THAT(page, HasSubstr("&lt;/title&gt;&lt;script&gt;&quot;&#39;&amp;\\x1b\\xff"));
}

}  // namespace
}  // namespace history

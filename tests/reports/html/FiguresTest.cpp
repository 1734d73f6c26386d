#include <gtest/gtest.h>

#include <limits>

#include "reports/html/Figures.h"

namespace reports::html {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct FigureRow {
  double number;
  const char* text;
};

const FigureRow kFigures[] = {{0, "0"},
                              {-3, "-3"},
                              {1.5, "1.5"},
                              {268435000, "268435000"},
                              {17.96383, "17.9638"},
                              {1.2e-9, "1.2e-09"},
                              {1e300, "1e+300"},
                              {kInfinity, "inf"}};

TEST(HtmlFigures, HaveNoMoreDigitsThanAReaderWants) {
  for (const FigureRow& row : kFigures) EXPECT_EQ(figure(row.number), row.text);
}

const FigureRow kCoordinates[] = {{1, "1.00"},
                                  {-0.126, "-0.13"},
                                  {1e300, "1000000.00"},
                                  {-kInfinity, "-1000000.00"},
                                  {std::numeric_limits<double>::quiet_NaN(), "0"}};

TEST(HtmlFigures, CoordinatesAreNumbersWhateverTheyCameFrom) {
  for (const FigureRow& row : kCoordinates) EXPECT_EQ(coordinate(row.number), row.text);
}

const FigureRow kDurations[] = {{-1, "0 s"},         {0, "0 s"},           {0.04, "0.0 s"},
                                {9.9, "9.9 s"},      {9.96, "10 s"},       {59.4, "59 s"},
                                {59.6, "1 min 0 s"}, {964, "16 min 4 s"},  {3599.6, "1 h 0 min"},
                                {7380, "2 h 3 min"}, {90000, "25 h 0 min"}};

TEST(HtmlFigures, DurationsAreReadAtAGlance) {
  for (const FigureRow& row : kDurations) EXPECT_EQ(duration(row.number), row.text);
}

TEST(HtmlFigures, AClockThatWasSetBackGivesNoNegativeTime) {
  const engine::Time now(std::chrono::seconds(100));
  EXPECT_EQ(secondsBetween(now, now - std::chrono::seconds(5)), 0);
  EXPECT_EQ(secondsBetween(now, now + std::chrono::milliseconds(1500)), 1.5);
}

TEST(HtmlFigures, OneIsNotSeveral) {
  EXPECT_EQ(counted(1, "line"), "1 line");
  EXPECT_EQ(counted(0, "line"), "0 lines");
}

}  // namespace
}  // namespace reports::html

#include <gtest/gtest.h>

#include <limits>

#include "engine/plan/Limits.h"

namespace engine {
namespace {

using Bound = std::optional<double>;
constexpr auto kNone = std::nullopt;
const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

Measurement measured(MeasuredValue value, Bound minimum = kNone, Bound maximum = kNone) {
  return {"Bandwidth", std::move(value), "GiB/s", minimum, maximum, "mem0"};
}

Limit limit(Bound minimum, Bound maximum, const std::string& name = "Bandwidth") {
  return {name, minimum, maximum, {}};
}

struct LimitRow {
  const char* name;
  Measurement measurement;
  std::vector<Limit> limits;
  Compliance compliance;
  Bound minimum, maximum;
};

class LimitRows : public testing::TestWithParam<LimitRow> {};

TEST_P(LimitRows, DecideWhatIsAllRight) {
  const CheckedMeasurement result = checked(GetParam().measurement, GetParam().limits);
  EXPECT_EQ(result.compliance, GetParam().compliance);
  EXPECT_EQ(result.measurement.minimum, GetParam().minimum);
  EXPECT_EQ(result.measurement.maximum, GetParam().maximum);
}

const LimitRow kLimitRows[] = {
    {"NoneAsksNothing", measured(5.0), {}, Compliance::kUnlimited, kNone, kNone},
    {"Inside", measured(5.0), {limit(4, 6)}, Compliance::kInside, 4, 6},
    {"OnTheMinimum", measured(4.0), {limit(4, 6)}, Compliance::kInside, 4, 6},
    {"OnTheMaximum", measured(6.0), {limit(4, 6)}, Compliance::kInside, 4, 6},
    {"Below", measured(3.9), {limit(4, 6)}, Compliance::kBelow, 4, 6},
    {"Above", measured(6.1), {limit(4, 6)}, Compliance::kAbove, 4, 6},
    {"OnlyAMinimum", measured(1e9), {limit(4, kNone)}, Compliance::kInside, 4, kNone},
    {"OnlyAMaximum", measured(-1e9), {limit(kNone, 6)}, Compliance::kInside, kNone, 6},
    {"ItsOwn", measured(5.0, 6, kNone), {}, Compliance::kBelow, 6, kNone},
    {"ThePlansInPlaceOfItsOwn", measured(5.0, 6, 9), {limit(4, kNone)}, Compliance::kInside, 4, 9},
    {"TheLastBoundCounts",
     measured(5.0),
     {limit(1, 4), limit(kNone, 6)},
     Compliance::kInside,
     1,
     6},
    {"OfAnother",
     measured(5.0),
     {limit(9, kNone, "Latency")},
     Compliance::kUnlimited,
     kNone,
     kNone},
    {"OfAPattern", measured(5.0), {limit(9, kNone, "Band*")}, Compliance::kBelow, 9, kNone},
    {"NanIsNeverInside", measured(kNan), {limit(4, 6)}, Compliance::kNoNumber, 4, 6},
    {"NanAgainstItsOwn", measured(kNan, 4, 6), {}, Compliance::kNoNumber, 4, 6},
    {"NanWithoutLimits", measured(kNan), {}, Compliance::kUnlimited, kNone, kNone},
    {"Infinity", measured(kInfinity), {limit(kNone, 6)}, Compliance::kAbove, kNone, 6},
    {"ATextForANumber", measured(std::string("5")), {limit(4, 6)}, Compliance::kNoNumber, 4, 6},
    {"TrueForANumber", measured(true), {limit(0, 2)}, Compliance::kNoNumber, 0, 2},
    {"ATextWithItsOwn", measured(std::string("5"), 4, 6), {}, Compliance::kUnlimited, 4, 6},
};
INSTANTIATE_TEST_SUITE_P(All, LimitRows, testing::ValuesIn(kLimitRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Limits, TheVerdictSuffersFromWhatIsOutsideAlone) {
  EXPECT_FALSE(isOutside(Compliance::kUnlimited));
  EXPECT_FALSE(isOutside(Compliance::kInside));
  EXPECT_TRUE(isOutside(Compliance::kBelow));
  EXPECT_TRUE(isOutside(Compliance::kAbove));
  EXPECT_TRUE(isOutside(Compliance::kNoNumber));
}

TEST(Limits, AComplaintHasValueLimitAndUnit) {
  EXPECT_EQ(complaintAbout(checked(measured(3.5), {limit(4, 6)})),
            "Bandwidth 3.5 GiB/s is below 4 GiB/s");
  EXPECT_EQ(complaintAbout(checked(measured(6.25), {limit(4, 6)})),
            "Bandwidth 6.25 GiB/s is above 6 GiB/s");
  EXPECT_EQ(complaintAbout(checked(measured(true), {limit(4, 6)})), "Bandwidth is no number");
  EXPECT_EQ(complaintAbout(checked(measured(5.0), {limit(4, 6)})), "");
}

TEST(Limits, OnesThatNothingWasMeasuredForAreUnmet) {
  const std::vector<Limit> unmet =
      unmetLimits({limit(1, 2, "Band*"), limit(1, 2, "Latency")}, {"Bandwidth"});
  ASSERT_EQ(unmet.size(), 1u);
  EXPECT_EQ(unmet[0].measurement, "Latency");
}

}  // namespace
}  // namespace engine

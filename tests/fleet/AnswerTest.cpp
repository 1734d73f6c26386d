#include <gtest/gtest.h>

#include "fleet/Answer.h"

namespace {

using fleet::GroupKind;
using fleet::Verdict;

TEST(FleetAnswer, EveryVerdictHasItsWord) {
  EXPECT_STREQ(nameOf(Verdict::kNone), "none");
  EXPECT_STREQ(nameOf(Verdict::kSkipped), "skipped");
  EXPECT_STREQ(nameOf(Verdict::kPassed), "passed");
  EXPECT_STREQ(nameOf(Verdict::kWarned), "warned");
  EXPECT_STREQ(nameOf(Verdict::kUnfinished), "unfinished");
  EXPECT_STREQ(nameOf(Verdict::kFailed), "failed");
}

TEST(FleetAnswer, EveryKindOfGroupHasItsWord) {
  EXPECT_STREQ(nameOf(GroupKind::kPart), "part");
  EXPECT_STREQ(nameOf(GroupKind::kModel), "model");
  EXPECT_STREQ(nameOf(GroupKind::kFirmware), "firmware");
  EXPECT_STREQ(nameOf(GroupKind::kBatch), "batch");
  EXPECT_STREQ(nameOf(GroupKind::kTest), "test");
}

}  // namespace

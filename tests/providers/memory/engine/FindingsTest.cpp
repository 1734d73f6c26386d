#include <gtest/gtest.h>

#include "providers/memory/engine/Findings.h"

namespace providers::memory {
namespace {

MemoryFault faultAt(std::uint64_t offset, std::uint64_t bits, std::size_t sweep = 0) {
  MemoryFault fault;
  fault.offset = offset;
  fault.actual = bits;
  fault.sweep = sweep;
  return fault;
}

MemoryReport told(const Findings& findings) {
  MemoryReport report;
  findings.tell(report);
  return report;
}

TEST(Findings, GatherWhatIsOnOnePage) {
  Findings findings;
  findings.add(faultAt(4096, 1));
  findings.add(faultAt(8184, 4));
  findings.add(faultAt(8192, 8));
  const MemoryReport report = told(findings);
  EXPECT_EQ(report.errors, 3U);
  EXPECT_EQ(report.bits, 13U);
  ASSERT_EQ(report.pages.size(), 2U);
  EXPECT_EQ(report.pages[0].offset, 4096U);
  EXPECT_EQ(report.pages[0].errors, 2U);
  EXPECT_EQ(report.pages[0].bits, 5U);
  EXPECT_EQ(report.pages[0].first.offset, 4096U);
  EXPECT_EQ(report.pages[1].offset, 8192U);
}

TEST(Findings, KeepSixteenPagesAndCountTheRest) {
  Findings findings;
  for (std::uint64_t page = 20; page > 0; --page) findings.add(faultAt(page * kPageBytes, 1));
  const MemoryReport report = told(findings);
  EXPECT_EQ(report.errors, 20U);
  ASSERT_EQ(report.pages.size(), 16U);
  for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(report.pages[i].offset, (i + 5) * kPageBytes);
}

TEST(Findings, OfSeveralThreadsAreOne) {
  Findings mine, others;
  mine.add(faultAt(100, 1, 3));
  others.add(faultAt(50, 2, 1));
  others.add(faultAt(9000, 4));
  mine.add(others);
  const MemoryReport report = told(mine);
  EXPECT_EQ(report.errors, 3U);
  EXPECT_EQ(report.bits, 7U);
  ASSERT_EQ(report.pages.size(), 2U);
  EXPECT_EQ(report.pages[0].errors, 2U);
  EXPECT_EQ(report.pages[0].first.offset, 50U) << "found by an earlier sweep";
}

TEST(Findings, OfAPageThatIsKnownAreAddedBehindThoseForWhichThereIsNoRoom) {
  Findings mine, others;
  for (std::uint64_t page = 1; page <= 16; ++page) mine.add(faultAt(page * 2 * kPageBytes, 1, 3));
  others.add(faultAt(3 * kPageBytes, 2));  // between them
  others.add(faultAt(32 * kPageBytes, 4, 1));
  mine.add(others);
  const MemoryReport report = told(mine);
  ASSERT_EQ(report.pages.size(), 16U);
  EXPECT_EQ(report.pages[15].errors, 2U);
  EXPECT_EQ(report.pages[15].bits, 5U);
  EXPECT_EQ(report.pages[15].first.sweep, 1U);
}

}  // namespace
}  // namespace providers::memory

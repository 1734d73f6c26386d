#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/Outcome.h"
#include "tests/support/ScarceMemory.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Failing = ScarceMemory::Failing;

/// A machine with two tests, and what a query of it takes, made while there is memory.
class AskedMachine : public WithRunner<Machine> {
 public:
  AskedMachine() { runner(); }

  /// The identifiers that a query appends, of which the `number`-th allocation fails.
  Outcome ask(std::size_t number, Failing failing, bool& hasFailed) {
    DiagsRunner& asked = runner();
    bool isFound = false;
    const auto query = [&] {
      const ScarceMemory scarce(number, failing);
      isFound = asked.GetCIMData(m_ref1, m_ref2, std::move(m_class), std::move(m_service),
                                 std::move(m_element), {}, {}, {}, {}, m_ids,
                                 DiagsRunner::EENUMTEST, std::move(m_family));
      hasFailed = scarce.hasFailed();
    };
    return outcomeOf([&] {
      query();
      EXPECT_EQ(isFound, !m_ids.empty());
      return std::to_string(m_ids.size());
    });
  }

 private:
  NZELVOR20::TCIMReference m_ref1{{}, {}};
  NZELVOR20::TCIMReference m_ref2{{}, {}};
  std::string m_class = kAvailableService;
  std::string m_service = "ServiceProvided";
  std::string m_element = "UserOfService";
  NZELVOR20::TCIMValue m_family{"cmpi"};
  std::vector<std::string> m_ids;
};

class AQueryWithoutMemory : public testing::TestWithParam<Failing> {};

// Catches what is allocated outside of the guarded part: before the query, or by its last words.
TEST_P(AQueryWithoutMemory, AnswersWithWhatItReachedAndThrowsNothing) {
  bool hasFailed = true;
  std::size_t number = 0;
  while (hasFailed) {
    AskedMachine machine;
    hasFailed = true;
    const Outcome outcome = machine.ask(++number, GetParam(), hasFailed);
    ASSERT_TRUE(outcome.returned()) << "allocation " << number << ": " << outcome;
    if (!hasFailed) {
      EXPECT_EQ(outcome.text, "2");
    }
  }
  EXPECT_GT(number, 100U);
}

// Catches a test that is listed, and refused when it is to run.
TEST(AListingWithoutMemory, ListsNoTestThatIsNotRecorded) {
  bool hasFailed = true;
  bool wasCutShort = false;
  for (std::size_t number = 1; hasFailed; ++number) {
    AskedMachine machine;
    DiagsRunner& runner = machine.runner();
    try {
      const ScarceMemory scarce(number, Failing::once);
      runner.EnumerateDiagTests({});
      hasFailed = scarce.hasFailed();
    } catch (const std::bad_alloc&) {
      wasCutShort = true;
    }
    std::string recorded;
    for (const auto& test : DiagsRunnerAccess::diagNS(runner)) {
      recorded += test.first + "|";
    }
    const std::string& listed = DiagsRunnerAccess::testList(runner);
    if (listed != "No matching diagnostic test or device found.\n") {
      EXPECT_EQ(recorded.compare(0, listed.size(), listed), 0)
          << "allocation " << number << ": " << listed << " of " << recorded;
    }
  }
  EXPECT_TRUE(wasCutShort);
}

INSTANTIATE_TEST_SUITE_P(, AQueryWithoutMemory,
                         testing::Values(Failing::once, Failing::fromThenOn));

}  // namespace
}  // namespace support

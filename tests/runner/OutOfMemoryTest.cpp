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

INSTANTIATE_TEST_SUITE_P(, AQueryWithoutMemory,
                         testing::Values(Failing::once, Failing::fromThenOn));

}  // namespace
}  // namespace support

#include <gtest/gtest.h>

#include <thread>

#include "tests/conformance/Conformance.h"

namespace conformance {
namespace {

/// Groups that have nothing to check in an early edition.
bool hasChecks(int edition, const std::string& group) {
  if (group == "Errors" || group == "Memory") return edition >= 200;
  if (group == "PropertyLists") return edition >= 210;
  return true;
}

class Conformance : public testing::TestWithParam<std::tuple<int, std::string>> {};

// A failure names the table, the slot, what it was given, and what was expected of it.
TEST_P(Conformance, TheSlotsAnswerAsTheyShould) {
  const auto& [edition, group] = GetParam();
  const Outcome outcome = run(edition, group);
  EXPECT_EQ(outcome.failuresText(), "");
  EXPECT_EQ(outcome.done > 0, hasChecks(edition, group));
}

INSTANTIATE_TEST_SUITE_P(Editions, Conformance,
                         testing::Combine(testing::Values(100, 200, 210),
                                          testing::ValuesIn(groups())),
                         [](const auto& tested) {
                           return std::get<1>(tested.param) +
                                  std::to_string(std::get<0>(tested.param));
                         });

class ManyThreads : public testing::TestWithParam<int> {};

// The slots must not depend on the thread that calls them, nor on being called by one at a time.
TEST_P(ManyThreads, OfTheProvidersOwnMayCheckEverythingAtOnce) {
  const Outcome outcome = run(GetParam(), "Everything", 8);
  EXPECT_EQ(outcome.failuresText(), "");
  EXPECT_GT(outcome.done, 8U * 1000U);
}

TEST_P(ManyThreads, OfTheCallerMayCheckEverythingAtOnce) {
  std::vector<Outcome> outcomes(8);
  std::vector<std::thread> threads;
  for (Outcome& outcome : outcomes) {
    threads.emplace_back([&] { outcome = run(GetParam(), "Everything"); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Outcome& outcome : outcomes) {
    EXPECT_EQ(outcome.failuresText(), "");
    EXPECT_GT(outcome.done, 1000U);
  }
}

INSTANTIATE_TEST_SUITE_P(Editions, ManyThreads, testing::Values(100, 200, 210),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace conformance

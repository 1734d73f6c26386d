#include <gtest/gtest.h>

#include <atomic>

#include "providers/processor/coherency/MessageExchange.h"

namespace providers {
namespace {

/// Turns a bit of one of the words that arrive, the `victim`-th of them.
class LateFault : public MessageTap {
 public:
  explicit LateFault(unsigned victim) : m_victim(victim) {}
  std::uint64_t pass(unsigned, std::uint64_t word) const override {
    return m_words++ == m_victim ? word ^ 2 : word;
  }
  unsigned words() const { return m_words; }

 private:
  const unsigned m_victim;
  mutable std::atomic<unsigned> m_words{0};
};

class MessageExchangeTest : public ::testing::Test {
 protected:
  ExchangeResult exchange(const MessageTap& tap, std::uint64_t exchanges = 50) {
    return exchangeMessages(
        3, 4, exchanges, [this](unsigned cpu) { return cpu != unusable; },
        [this] { return looks++ < limit; }, tap);
  }

  unsigned unusable = 99;
  std::atomic<int> looks{0};
  int limit = 1000000;
};

TEST_F(MessageExchangeTest, EveryMessageArrives) {
  const ExchangeResult result = exchange(MessageTap());
  EXPECT_TRUE(result.bound);
  EXPECT_FALSE(result.wrong);
  EXPECT_EQ(result.messages, 100U);
}

// Catches messages between threads that the system has moved away from a CPU that is gone.
TEST_F(MessageExchangeTest, ACpuThatGoesAwayMeanwhileIsNotedAtTheEnd) {
  for (const unsigned gone : {3U, 4U}) {
    std::atomic<int> binds{0};
    const auto bind = [&](unsigned cpu) { return cpu != gone || ++binds == 1; };
    const ExchangeResult result = exchangeMessages(
        3, 4, 50, bind, [] { return true; }, MessageTap());
    EXPECT_FALSE(result.bound) << gone;
  }
}

TEST_F(MessageExchangeTest, WithoutAThreadForTheSecondOneNothingIsExchanged) {
  const StartThread none = [](std::function<void()>) -> std::thread {
    throw std::system_error(EAGAIN, std::generic_category());
  };
  const ExchangeResult result = exchangeMessages(
      3, 4, 50, [](unsigned) { return true; }, [] { return true; }, MessageTap(), none);
  EXPECT_FALSE(result.started);
  EXPECT_FALSE(result.bound);
  EXPECT_EQ(result.messages, 0U);
}

TEST_F(MessageExchangeTest, EveryWordOfAMessageIsLookedAt) {
  const LateFault none(~0U);
  exchange(none);
  EXPECT_EQ(none.words(), 100 * kMessageWords);
}

TEST_F(MessageExchangeTest, EachWordThatArrivesWrongIsFoundAndNamed) {
  for (unsigned word = 0; word < kMessageWords; ++word) {
    const ExchangeResult result = exchange(LateFault(word));
    ASSERT_TRUE(result.wrong) << word;
    EXPECT_EQ(result.wrong->word, word);
    EXPECT_EQ(result.wrong->expected ^ result.wrong->found, 2U);
    EXPECT_EQ(result.wrong->reader, 4U) << "the second one receives the first message";
    EXPECT_EQ(result.messages, 1U);
  }
}

TEST_F(MessageExchangeTest, TheAnswerThatArrivesWrongIsTheFirstOnes) {
  const ExchangeResult result = exchange(LateFault(kMessageWords));
  ASSERT_TRUE(result.wrong);
  EXPECT_EQ(result.wrong->reader, 3U);
  EXPECT_EQ(result.messages, 2U);
}

TEST_F(MessageExchangeTest, AnEndOfTheTimeEndsTheExchange) {
  limit = 10;
  const ExchangeResult result = exchange(MessageTap(), 1000000);
  EXPECT_FALSE(result.wrong);
  EXPECT_EQ(result.messages, 10U);
}

TEST_F(MessageExchangeTest, ACpuThatCannotBeUsedIsToldAndNothingIsFoundWrong) {
  for (const unsigned cpu : {3U, 4U}) {
    unusable = cpu;
    const ExchangeResult result = exchange(MessageTap());
    EXPECT_FALSE(result.bound) << cpu;
    EXPECT_FALSE(result.wrong) << cpu;
    EXPECT_EQ(result.messages, 0U) << cpu;
  }
}

}  // namespace
}  // namespace providers

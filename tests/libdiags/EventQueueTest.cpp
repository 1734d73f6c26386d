#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>

#include "libdiags/EventQueue.h"

namespace libdiags {
namespace {

using State = EventQueue::State;
using std::chrono::milliseconds;

class Queue : public ::testing::Test {
 protected:
  State next(std::optional<milliseconds> wait = milliseconds(0)) { return queue.next(wait, event); }
  EventQueue queue{10};
  std::string event;
};

TEST_F(Queue, HandsEventsOutInTheirOrderAndThenTheEnd) {
  queue.push("first");
  queue.push("second");
  queue.end();
  EXPECT_EQ(next(), State::kEvent);
  EXPECT_EQ(event, "first");
  EXPECT_EQ(next(), State::kEvent);
  EXPECT_EQ(event, "second");
  EXPECT_EQ(next(std::nullopt), State::kEnd);
  EXPECT_EQ(next(), State::kEnd) << "again and again";
}

TEST_F(Queue, SaysThatNothingCameInTime) { EXPECT_EQ(next(milliseconds(1)), State::kTimeout); }

TEST_F(Queue, WhoWaitsGetsWhatAnotherThreadPuts) {
  std::thread other([this] { queue.push("late"); });
  EXPECT_EQ(next(std::nullopt), State::kEvent);
  EXPECT_EQ(event, "late");
  other.join();
}

// Catches memory that grows with a host that does not ask.
TEST_F(Queue, AFullOneHoldsUpWhoPutsUntilThereIsRoom) {
  queue.push("0123456789");
  auto pushed = std::async(std::launch::async, [this] { queue.push("more"); });
  EXPECT_EQ(pushed.wait_for(milliseconds(20)), std::future_status::timeout);
  EXPECT_EQ(next(), State::kEvent);
  pushed.get();
  EXPECT_EQ(next(), State::kEvent);
  EXPECT_EQ(event, "more");
}

TEST_F(Queue, AnOpenOneTakesAll) {
  queue.open();
  for (int i = 0; i < 100; ++i) queue.push("0123456789");
  int count = 0;
  while (next() == State::kEvent) ++count;
  EXPECT_EQ(count, 100);
}

// Catches a close that waits for ever for the run's thread.
TEST_F(Queue, DiscardingFreesWhoWaitsAndForgetsAll) {
  queue.push("0123456789");
  auto pushed = std::async(std::launch::async, [this] { queue.push("more"); });
  queue.discard();
  pushed.get();
  queue.push("later");
  EXPECT_EQ(next(), State::kTimeout);
}

TEST_F(Queue, WhatIsPutBackComesFirst) {
  queue.push("first");
  queue.push("second");
  next();
  queue.putBack(event);
  EXPECT_EQ(next(), State::kEvent);
  EXPECT_EQ(event, "first");
}

}  // namespace
}  // namespace libdiags

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

TEST_F(Queue, HandsOutManyAtOnceUpToSomeBytes) {
  for (const char* const one : {"123", "456", "789"}) queue.push(one);
  queue.end();
  std::deque<std::string> events;
  EXPECT_EQ(queue.nextMany(milliseconds(0), 4, events), State::kEvent);
  EXPECT_EQ(events, (std::deque<std::string>{"123", "456"}));
  EXPECT_EQ(next(), State::kEvent);
  EXPECT_EQ(event, "789");
  EXPECT_EQ(queue.nextMany(milliseconds(0), 4, events), State::kEnd);
}

// Catches one that holds up its run for ever: room that was made and not told of.
TEST_F(Queue, TakingManyMakesRoom) {
  queue.push("0123456789");
  auto pushed = std::async(std::launch::async, [this] { queue.push("more"); });
  std::deque<std::string> events;
  EXPECT_EQ(queue.nextMany(std::nullopt, 1, events), State::kEvent);
  pushed.get();
  EXPECT_EQ(next(), State::kEvent);
}

TEST_F(Queue, ManyThatArePutBackKeepTheirOrder) {
  for (const char* const one : {"1", "2", "3"}) queue.push(one);
  std::deque<std::string> events;
  queue.nextMany(std::nullopt, 2, events);
  queue.putBack(std::move(events));
  for (const char* const one : {"1", "2", "3"}) {
    EXPECT_EQ(next(), State::kEvent);
    EXPECT_EQ(event, one);
  }
}

TEST_F(Queue, WhatIsPutBackComesFirst) {
  queue.push("first");
  queue.push("second");
  next();
  queue.putBack({event});
  EXPECT_EQ(next(), State::kEvent);
  EXPECT_EQ(event, "first");
}

}  // namespace
}  // namespace libdiags

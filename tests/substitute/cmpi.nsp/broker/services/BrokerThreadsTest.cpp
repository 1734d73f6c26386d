#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <future>
#include <limits>
#include <thread>

#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

const CMPIBrokerExtFT& xft = kBrokerExtTable;

std::atomic<int> counter{0};

CMPI_THREAD_RETURN valueOf(int number) {
#if defined(_WIN32)
  return static_cast<CMPI_THREAD_RETURN>(number);
#else
  static char values[16];
  return &values[number];
#endif
}

CMPI_THREAD_RETURN CMPI_THREAD_CDECL countOne(void*) {
  ++counter;
  return valueOf(3);
}

CMPI_THREAD_RETURN CMPI_THREAD_CDECL leaveEarly(void*) {
  xft.exitThread(valueOf(5));
  ++counter;
  return valueOf(0);
}

CMPI_THREAD_RETURN CMPI_THREAD_CDECL sleepLong(void*) {
  ++counter;
  xft.threadSleep(60 * 60 * 1000);
  ++counter;
  return valueOf(0);
}

class BrokerThreads : public testing::Test {
 protected:
  void SetUp() override { counter = 0; }
};

TEST_F(BrokerThreads, AThreadRunsAndIsJoined) {
  CMPI_THREAD_RETURN value{};
  EXPECT_EQ(xft.joinThread(xft.newThread(countOne, nullptr, 0), &value), 0);
  EXPECT_EQ(value, valueOf(3));
  EXPECT_EQ(counter.load(), 1);
}

TEST_F(BrokerThreads, AThreadIsJoinedOnce) {
  CMPI_THREAD_TYPE thread = xft.newThread(countOne, nullptr, 0);
  EXPECT_EQ(xft.joinThread(thread, nullptr), 0);
  EXPECT_EQ(xft.joinThread(thread, nullptr), ESRCH);
  EXPECT_EQ(xft.joinThread(nullptr, nullptr), ESRCH);
}

TEST_F(BrokerThreads, AThreadMayLeaveEarly) {
  CMPI_THREAD_RETURN value{};
  EXPECT_EQ(xft.joinThread(xft.newThread(leaveEarly, nullptr, 0), &value), 0);
  EXPECT_EQ(value, valueOf(5));
  EXPECT_EQ(counter.load(), 0);
}

TEST_F(BrokerThreads, AThreadOfTheHostCannotBeEnded) {
  EXPECT_EQ(xft.exitThread(valueOf(0)), EPERM);
}

TEST_F(BrokerThreads, ASleepingThreadCanBeCancelled) {
  CMPI_THREAD_TYPE thread = xft.newThread(sleepLong, nullptr, 0);
  EXPECT_EQ(xft.cancelThread(thread), 0);
  EXPECT_EQ(xft.joinThread(thread, nullptr), 0);
  EXPECT_EQ(counter.load(), 1);
  EXPECT_EQ(xft.cancelThread(thread), ESRCH);
}

/// A provider's thread that asks another provider for a fan; a test scripts what that one does.
class ThreadInAnUpcall : public InCall {
 protected:
  void SetUp() override {
    counter = 0;
    upcalls.addFan("left");
  }

  /// The value that the thread ended with.
  CMPI_THREAD_RETURN ask(const std::function<void()>& other) {
    upcalls.failure = [&] {
      const Scope call(Scope::Reason::kCall, &own);
      other();
    };
    CMPI_THREAD_TYPE thread = xft.newThread(askAndSleep, this, 0);
    self.set_value(thread);
    CMPI_THREAD_RETURN value{};
    EXPECT_EQ(xft.joinThread(thread, &value), 0);
    return value;
  }

  std::promise<CMPI_THREAD_TYPE> self;

 private:
  static CMPI_THREAD_RETURN CMPI_THREAD_CDECL askAndSleep(void* parm) {
    auto& test = *static_cast<ThreadInAnUpcall*>(parm);
    CBAttachThread(test.broker(), test.m_prepared);
    if (CBGetInstance(test.broker(), test.m_prepared, test.m_path, nullptr, nullptr)) ++counter;
    xft.threadSleep(0);
    return valueOf(4);
  }

  CMPIContext* m_prepared = CBPrepareAttachThread(broker(), context);
  CMPIObjectPath* m_path = fanPath();
};

// The upcall's frames cannot be unwound: the process used to end here.
TEST_F(ThreadInAnUpcall, IsCancelledOnlyWhenItIsBack) {
  const CMPI_THREAD_RETURN value = ask([&] {
    EXPECT_EQ(xft.cancelThread(self.get_future().get()), 0);
    xft.threadSleep(0);
    ++counter;
  });
  EXPECT_EQ(counter.load(), 2);
  EXPECT_EQ(value, CMPI_THREAD_RETURN{});
}

TEST_F(ThreadInAnUpcall, IsNotForTheOtherProviderToEnd) {
  const CMPI_THREAD_RETURN value = ask([] { EXPECT_EQ(xft.exitThread(valueOf(5)), EPERM); });
  EXPECT_EQ(counter.load(), 1);
  EXPECT_EQ(value, valueOf(4));
}

TEST_F(BrokerThreads, WithoutARoutineThereIsNoThread) {
  EXPECT_EQ(xft.newThread(nullptr, nullptr, 0), nullptr);
}

int onceCalls = 0;

TEST_F(BrokerThreads, OnceIsOnce) {
  int once = 0;
  onceCalls = 0;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(xft.threadOnce(&once, [] { ++onceCalls; }), 0);
  EXPECT_EQ(onceCalls, 1);
  EXPECT_EQ(xft.threadOnce(nullptr, nullptr), EINVAL);
}

TEST_F(BrokerThreads, AMutexIsRecursive) {
  CMPI_MUTEX_TYPE mutex = xft.newMutex(0);
  EXPECT_EQ(xft.lockMutex2(mutex), 0);
  EXPECT_EQ(xft.lockMutex2(mutex), 0);
  xft.unlockMutex(mutex);
  EXPECT_EQ(xft.unlockMutex2(mutex), 0);
  EXPECT_EQ(xft.destroyMutex2(mutex), 0);
  EXPECT_EQ(xft.destroyMutex2(mutex), EINVAL);
  EXPECT_EQ(xft.lockMutex2(mutex), EINVAL);
  EXPECT_EQ(xft.lockMutex2(nullptr), EINVAL);
}

TEST_F(BrokerThreads, AMutexIsItsOwnersAlone) {
  CMPI_MUTEX_TYPE mutex = xft.newMutex(0);
  CMPI_COND_TYPE condition = xft.newCondition(0);
  struct timespec past = {};
  xft.lockMutex(mutex);
  std::thread([&] {
    EXPECT_EQ(xft.unlockMutex2(mutex), EPERM);
    EXPECT_EQ(xft.timedCondWait(condition, mutex, &past), EPERM);
    EXPECT_EQ(xft.destroyMutex2(mutex), EBUSY);
  }).join();
  EXPECT_EQ(xft.unlockMutex2(mutex), 0);
  EXPECT_EQ(xft.unlockMutex2(mutex), EPERM);
  EXPECT_EQ(xft.destroyMutex2(mutex), 0);
  xft.destroyCondition(condition);
}

struct Signal {
  CMPI_MUTEX_TYPE mutex;
  CMPI_COND_TYPE condition;
  bool raised;
};

CMPI_THREAD_RETURN CMPI_THREAD_CDECL raise(void* parm) {
  auto* signal = static_cast<Signal*>(parm);
  xft.lockMutex(signal->mutex);
  signal->raised = true;
  xft.signalCondition(signal->condition);
  xft.unlockMutex(signal->mutex);
  return valueOf(0);
}

TEST_F(BrokerThreads, AConditionWakesItsWaiter) {
  Signal signal = {xft.newMutex(0), xft.newCondition(0), false};
  xft.lockMutex(signal.mutex);
  CMPI_THREAD_TYPE thread = xft.newThread(raise, &signal, 0);
  while (!signal.raised) ASSERT_EQ(xft.condWait(signal.condition, signal.mutex), 0);
  xft.unlockMutex(signal.mutex);
  xft.joinThread(thread, nullptr);
  EXPECT_EQ(xft.destroyCondition2(signal.condition), 0);
  xft.destroyMutex(signal.mutex);
}

struct Waiter {
  CMPI_MUTEX_TYPE mutex;
  CMPI_COND_TYPE condition;
  bool waits;
  int answer;
};

CMPI_THREAD_RETURN CMPI_THREAD_CDECL waitForAWhile(void* parm) {
  auto* waiter = static_cast<Waiter*>(parm);
  struct timespec soon = {};
  soon.tv_sec = std::time(nullptr) + 2;
  xft.lockMutex(waiter->mutex);
  waiter->waits = true;
  waiter->answer = xft.timedCondWait(waiter->condition, waiter->mutex, &soon);
  xft.unlockMutex(waiter->mutex);
  return valueOf(0);
}

// A waiting thread looks now and then whether it has to end; here it gets its mutex back from that
// only after the signal. It used to wait on, without an end.
TEST_F(BrokerThreads, ASignalIsNotLostOnAThreadThatLooksWhetherItHasToEnd) {
  Waiter waiter = {xft.newMutex(0), xft.newCondition(0), false, -1};
  CMPI_THREAD_TYPE thread = xft.newThread(waitForAWhile, &waiter, 0);
  bool waits = false;
  while (!waits) {
    xft.lockMutex(waiter.mutex);
    waits = waiter.waits;
    if (waits) xft.threadSleep(120);
    if (waits) xft.signalCondition(waiter.condition);
    xft.unlockMutex(waiter.mutex);
  }
  xft.joinThread(thread, nullptr);
  EXPECT_EQ(waiter.answer, 0);
  xft.destroyCondition(waiter.condition);
  xft.destroyMutex(waiter.mutex);
}

CMPI_THREAD_RETURN CMPI_THREAD_CDECL waitForEver(void* parm) {
  auto* waiter = static_cast<Waiter*>(parm);
  xft.lockMutex(waiter->mutex);
  waiter->waits = true;
  xft.condWait(waiter->condition, waiter->mutex);
  waiter->answer = 0;
  xft.unlockMutex(waiter->mutex);
  return valueOf(0);
}

// Catches a thread that takes its mutex with it, which then nobody gets any more.
TEST_F(BrokerThreads, AThreadThatIsCancelledWhileItWaitsLeavesItsMutexToTheOthers) {
  Waiter waiter = {xft.newMutex(0), xft.newCondition(0), false, -1};
  CMPI_THREAD_TYPE thread = xft.newThread(waitForEver, &waiter, 0);
  for (bool waits = false; !waits;) {
    xft.lockMutex(waiter.mutex);
    waits = waiter.waits;
    xft.unlockMutex(waiter.mutex);
  }
  EXPECT_EQ(xft.cancelThread(thread), 0);
  EXPECT_EQ(xft.joinThread(thread, nullptr), 0);
  EXPECT_EQ(waiter.answer, -1);
  EXPECT_EQ(xft.destroyMutex2(waiter.mutex), 0);
  xft.destroyCondition(waiter.condition);
}

TEST_F(BrokerThreads, AWaitEndsAtItsDeadline) {
  CMPI_MUTEX_TYPE mutex = xft.newMutex(0);
  CMPI_COND_TYPE condition = xft.newCondition(0);
  struct timespec past = {};
  past.tv_sec = std::time(nullptr) - 1;
  xft.lockMutex(mutex);
  EXPECT_EQ(xft.timedCondWait(condition, mutex, &past), ETIMEDOUT);
  EXPECT_EQ(xft.timedCondWait(condition, mutex, nullptr), EINVAL);
  xft.unlockMutex(mutex);
  xft.destroyCondition(condition);
  EXPECT_EQ(xft.timedCondWait(condition, mutex, &past), EINVAL);
  EXPECT_EQ(xft.signalCondition(condition), EINVAL);
  xft.destroyMutex(mutex);
}

// The clock counts nanoseconds and cannot tell times that late: they used to be long ago.
TEST_F(BrokerThreads, AWaitWithADeadlineBeyondTheClockGoesOn) {
  constexpr std::time_t kLast = std::numeric_limits<std::time_t>::max();
  for (const std::time_t late : {kLast, kLast / 2}) {
    Signal signal = {xft.newMutex(0), xft.newCondition(0), false};
    struct timespec deadline = {};
    deadline.tv_sec = late;
    xft.lockMutex(signal.mutex);
    CMPI_THREAD_TYPE thread = xft.newThread(raise, &signal, 0);
    int answer = 0;
    while (answer == 0 && !signal.raised) {
      answer = xft.timedCondWait(signal.condition, signal.mutex, &deadline);
    }
    xft.unlockMutex(signal.mutex);
    EXPECT_EQ(answer, 0) << late;
    xft.joinThread(thread, nullptr);
    xft.destroyCondition(signal.condition);
    xft.destroyMutex(signal.mutex);
  }
}

/// Two seconds ago and a second and a half, as 32-bit words where those are a layout.
struct timespec halfASecondAgo() {
  struct timespec time = {};
  const std::time_t start = std::time(nullptr) - 2;
#if defined(_WIN32)
  const std::int32_t words[2] = {static_cast<std::int32_t>(start), 1'500'000'000};
  std::memcpy(&time, words, sizeof words);
#else
  time.tv_sec = start;
  time.tv_nsec = 1'500'000'000;
#endif
  return time;
}

// Providers add to the nanoseconds without carrying over. Where words of 32 bits are a layout, it
// looked like seconds of the next century, and the wait did not end.
TEST_F(BrokerThreads, NanosecondsOfMoreThanASecondAreTakenForThat) {
  CMPI_MUTEX_TYPE mutex = xft.newMutex(0);
  CMPI_COND_TYPE condition = xft.newCondition(0);
  struct timespec deadline = halfASecondAgo();
  xft.lockMutex(mutex);
  EXPECT_EQ(xft.timedCondWait(condition, mutex, &deadline), ETIMEDOUT);
  xft.unlockMutex(mutex);
  xft.destroyCondition(condition);
  xft.destroyMutex(mutex);
}

TEST_F(BrokerThreads, APlainNameBecomesAFileName) {
  char* name = xft.resolveFileName("acmeFan");
#if defined(_WIN32)
  EXPECT_STREQ(name, "acmeFan.dll");
#else
  EXPECT_STREQ(name, "libacmeFan.so");
#endif
  std::free(name);
  EXPECT_EQ(xft.resolveFileName(nullptr), nullptr);
}

}  // namespace
}  // namespace cmpinsp::broker

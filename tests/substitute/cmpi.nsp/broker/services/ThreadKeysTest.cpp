#include <atomic>
#include <cerrno>
#include <thread>
#include <vector>

#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

const CMPIBrokerExtFT& xft = kBrokerExtTable;
std::atomic<int> cleaned{0};

void countCleanup(void*) { ++cleaned; }

TEST(ThreadKeys, EachThreadHasItsValue) {
  CMPI_THREAD_KEY_TYPE key = 0;
  int here = 0;
  int there = 0;
  ASSERT_EQ(xft.createThreadKey(&key, nullptr), 0);
  EXPECT_EQ(xft.setThreadSpecific(key, &here), 0);
  std::thread([&] {
    EXPECT_EQ(xft.getThreadSpecific(key), nullptr);
    xft.setThreadSpecific(key, &there);
    EXPECT_EQ(xft.getThreadSpecific(key), &there);
  }).join();
  EXPECT_EQ(xft.getThreadSpecific(key), &here);
  EXPECT_EQ(xft.destroyThreadKey(key), 0);
}

TEST(ThreadKeys, AValueIsTidiedUpWhenItsThreadEnds) {
  CMPI_THREAD_KEY_TYPE key = 0;
  xft.createThreadKey(&key, countCleanup);
  cleaned = 0;
  std::thread([&] { xft.setThreadSpecific(key, &key); }).join();
  EXPECT_EQ(cleaned.load(), 1);
  std::thread([&] { xft.setThreadSpecific(key, nullptr); }).join();
  EXPECT_EQ(cleaned.load(), 1);
  xft.destroyThreadKey(key);
}

// The number of a destroyed key is used again; the old value must not show up under it.
TEST(ThreadKeys, ANewKeyStartsEmpty) {
  CMPI_THREAD_KEY_TYPE key = 0;
  xft.createThreadKey(&key, nullptr);
  xft.setThreadSpecific(key, &key);
  xft.destroyThreadKey(key);
  EXPECT_EQ(xft.getThreadSpecific(key), nullptr);
  EXPECT_EQ(xft.setThreadSpecific(key, &key), EINVAL);
  CMPI_THREAD_KEY_TYPE next = 0;
  xft.createThreadKey(&next, nullptr);
  EXPECT_EQ(xft.getThreadSpecific(next), nullptr);
  xft.destroyThreadKey(next);
}

CMPI_THREAD_KEY_TYPE stubborn = 0;

void setAgain(void* value) {
  ++cleaned;
  kBrokerExtTable.setThreadSpecific(stubborn, value);
}

// Catches a clean-up that goes on for ever, and one that is not repeated.
TEST(ThreadKeys, AValueThatIsSetAnewIsTidiedUpFourTimes) {
  xft.createThreadKey(&stubborn, setAgain);
  cleaned = 0;
  std::thread([&] { xft.setThreadSpecific(stubborn, &stubborn); }).join();
  EXPECT_EQ(cleaned.load(), 4);
  xft.destroyThreadKey(stubborn);
}

TEST(ThreadKeys, NoValueIsTidiedUpUnderAnotherUseOfItsKey) {
  CMPI_THREAD_KEY_TYPE key = 0;
  xft.createThreadKey(&key, nullptr);
  cleaned = 0;
  std::thread([&] {
    xft.setThreadSpecific(key, &key);
    xft.destroyThreadKey(key);
    xft.createThreadKey(&key, countCleanup);
  }).join();
  EXPECT_EQ(cleaned.load(), 0);
  xft.destroyThreadKey(key);
}

TEST(ThreadKeys, ThereAreFourThousandAndNinetySixAndTheLowestIsUsedAgain) {
  std::vector<CMPI_THREAD_KEY_TYPE> keys;
  CMPI_THREAD_KEY_TYPE key = 0;
  int error = 0;
  while ((error = xft.createThreadKey(&key, nullptr)) == 0) keys.push_back(key);
  EXPECT_EQ(error, EAGAIN);
  EXPECT_EQ(keys.back(), 4096U);
  EXPECT_EQ(xft.setThreadSpecific(4097, &key), EINVAL);
  EXPECT_EQ(xft.setThreadSpecific(keys.front(), &key), 0);
  EXPECT_EQ(xft.getThreadSpecific(keys.back()), nullptr);
  xft.destroyThreadKey(keys.back());
  xft.destroyThreadKey(keys.front());
  EXPECT_EQ(xft.createThreadKey(&key, nullptr), 0);
  EXPECT_EQ(key, keys.front());
  for (const CMPI_THREAD_KEY_TYPE each : keys) xft.destroyThreadKey(each);
}

// Some providers keep keys in 4 bytes.
TEST(ThreadKeys, AKeyIsStoredInFourBytes) {
  struct {
    CMPI_THREAD_KEY_TYPE key;
    unsigned guard;
  } place = {0, 0xAAAAAAAA};
  xft.createThreadKey(&place.key, nullptr);
  EXPECT_EQ(place.guard, 0xAAAAAAAA);
  xft.destroyThreadKey(place.key);
  EXPECT_EQ(xft.createThreadKey(nullptr, nullptr), EINVAL);
  EXPECT_EQ(xft.destroyThreadKey(0), EINVAL);
}

}  // namespace
}  // namespace cmpinsp::broker

#include <array>
#include <atomic>
#include <thread>

#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/broker/library/LoaderWaits.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

/// Threads that do nothing, for their identities.
class Threads {
 public:
  Threads() {
    for (std::thread& thread : m_threads) {
      thread = std::thread([this] {
        while (!m_isOver) std::this_thread::yield();
      });
    }
  }
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;
  ~Threads() {
    m_isOver = true;
    for (std::thread& thread : m_threads) thread.join();
  }
  std::thread::id operator[](std::size_t index) const { return m_threads.at(index).get_id(); }

 private:
  std::atomic<bool> m_isOver{false};
  std::array<std::thread, 3> m_threads;
};

TEST(LoaderWaits, ACircleIsRefusedHoweverLong) {
  const Threads threads;
  const int a = 0;
  const int b = 0;
  const int c = 0;
  EXPECT_TRUE(beginLoaderWait(threads[0], &b, threads[1]));
  EXPECT_TRUE(beginLoaderWait(threads[1], &c, threads[2]));
  EXPECT_FALSE(beginLoaderWait(threads[2], &a, threads[0]));
  endLoaderWait(threads[1]);
  EXPECT_TRUE(beginLoaderWait(threads[2], &a, threads[0]));
  endLoaderWait(threads[2]);
  endLoaderWait(threads[0]);
}

TEST(LoaderWaits, WhoHasYetToWakeUpWaitsForNobody) {
  const Threads threads;
  const int a = 0;
  const int b = 0;
  EXPECT_TRUE(beginLoaderWait(threads[0], &b, threads[1]));
  endLoaderWaits(&b);
  EXPECT_TRUE(beginLoaderWait(threads[1], &a, threads[0]));
  endLoaderWait(threads[1]);
}

TEST(LoaderWaits, OfTwoFactoriesThatAskEachOtherOneIsRefused) {
  FakeUpcalls upcalls[2];
  Provider one("Asking", PROVIDER_FILE, upcalls[0]);
  Provider other("Asking", PROVIDER_FILE, upcalls[1]);
  const ObjectPath fan{"root/cimv2", "ACME_Fan", {{"Name", NZELVOR20::TCIMValue("x")}}};
  std::atomic<int> arrived{0};
  std::atomic<int> answered{0};
  std::atomic<int> refused{0};
  const auto ask = [&](Provider& asked) {
    ++arrived;
    while (arrived < 2) std::this_thread::yield();
    try {
      asked.getInstance(fan, nullptr);
      ++answered;
    } catch (const NZELVOR20::TVORException& failure) {
      EXPECT_NE(std::string(failure.what()).find("it is still being initialised"),
                std::string::npos)
          << failure.what();
      ++refused;
    }
  };
  upcalls[0].failure = [&] { ask(other); };
  upcalls[1].failure = [&] { ask(one); };
  std::thread thread([&] { one.load(); });
  other.load();
  thread.join();
  EXPECT_EQ(answered, 1);
  EXPECT_EQ(refused, 1);
  EXPECT_EQ(one.getInstance(fan, nullptr)->path, fan);
  EXPECT_EQ(other.getInstance(fan, nullptr)->path, fan);
}

}  // namespace
}  // namespace cmpinsp::broker

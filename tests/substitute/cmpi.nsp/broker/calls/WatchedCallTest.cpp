#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/broker/WatchedCall.h"
#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

using Lines = std::vector<std::string>;

/// Keeps what it is told, from whatever thread.
class KeptCalls final : public substitute::ICallWatch {
 public:
  void entered(const char* provider, const char* operation) noexcept override {
    add(std::string(provider) + " " + operation);
  }
  void left() noexcept override { add("left"); }
  Lines take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_lines, {});
  }

 private:
  void add(const std::string& line) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.push_back(line);
  }
  std::mutex m_mutex;
  Lines m_lines;
};

class WatchedCallTest : public testing::Test {
 protected:
  WatchedCallTest() { setCallWatch(&kept); }
  ~WatchedCallTest() override { setCallWatch(nullptr); }

  std::unique_ptr<Provider> make(const char* name) {
    return std::make_unique<Provider>(name, PROVIDER_FILE, upcalls);
  }
  /// A provider that was loaded unseen.
  std::unique_ptr<Provider> loaded(const char* name) {
    auto provider = make(name);
    provider->load();
    kept.take();
    return provider;
  }
  static std::size_t count(const Lines& lines, const std::string& wanted) {
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), wanted));
  }

  const ObjectPath fan{"root/cimv2", "ACME_Fan", {{"Name", NZELVOR20::TCIMValue("fan1")}}};
  FakeUpcalls upcalls;
  KeptCalls kept;
};

// Catches a library's initialisers and factories that crash without a name.
TEST_F(WatchedCallTest, LoadingTellsOfTheLibraryAndThenOfEachFactory) {
  make("Empty")->wasTried();
  EXPECT_EQ(kept.take(), Lines{});
  const auto provider = make("Test");
  provider->load();
  const Lines lines = kept.take();
  ASSERT_GE(lines.size(), 4U);
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4),
            (Lines{"Test load", "left", "Test create", "left"}));
}

TEST_F(WatchedCallTest, ACallIsToldByTheNameOfItsFunction) {
  const auto provider = loaded("Test");
  provider->getInstance(fan, nullptr);
  EXPECT_EQ(kept.take(), (Lines{"Test getInstance", "left"}));
  provider->enumerateInstances({"root/cimv2", "ACME_Fan", {}}, nullptr,
                               [](const InstanceDataPtr&) { return true; });
  EXPECT_EQ(kept.take(), (Lines{"Test enumerateInstances", "left"}));
}

TEST_F(WatchedCallTest, ALibraryThatCannotBeLoadedIsLeftToo) {
  Provider nowhere("Nowhere", "./no-such-library", upcalls);
  EXPECT_THROW(nowhere.load(), NZELVOR20::TVORException);
  EXPECT_EQ(kept.take(), (Lines{"Nowhere load", "left"}));
}

TEST_F(WatchedCallTest, ACallThatFailsIsLeftToo) {
  const auto provider = loaded("Test");
  ObjectPath stranger = fan;
  stranger.keys[0].second = NZELVOR20::TCIMValue("missing");
  EXPECT_THROW(provider->getInstance(stranger, nullptr), NZELVOR20::TVORException);
  EXPECT_EQ(kept.take(), (Lines{"Test getInstance", "left"}));
}

TEST_F(WatchedCallTest, CleaningUpIsToldForEachInterface) {
  auto provider = loaded("Test");
  const std::size_t interfaces = provider->offered().size();
  provider.reset();
  const Lines lines = kept.take();
  EXPECT_EQ(count(lines, "Test cleanup"), interfaces);
  EXPECT_EQ(count(lines, "left"), interfaces);
}

// A test runs in a thread of its provider's: what crashes there has to have a name as well.
TEST_F(WatchedCallTest, ThreadsOfTheProviderAreToldWithItsName) {
  upcalls.addFan("fan1");
  const auto provider = loaded("Threaded");
  Arguments out;
  provider->invokeMethod(fan, "Start", {}, out);
  provider->invokeMethod(fan, "Join", {}, out);
  const Lines lines = kept.take();
  EXPECT_EQ(count(lines, "Threaded invokeMethod"), 2U);
  EXPECT_EQ(count(lines, "Threaded thread"), 1U);
  EXPECT_EQ(count(lines, "left"), 3U);
}

// Catches a call that is left at a watch that did not see it entered, or the other way round.
TEST_F(WatchedCallTest, ACallTellsTheWatchThatItBeganWith) {
  {
    const WatchedCall seen("Test", "getInstance");
    setCallWatch(nullptr);
    const WatchedCall unseen("Test", "setProperty");
    setCallWatch(&kept);
  }
  EXPECT_EQ(kept.take(), (Lines{"Test getInstance", "left"}));
}

}  // namespace
}  // namespace cmpinsp::broker

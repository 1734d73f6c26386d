#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "substitute/cmpi.nsp/broker/services/CallGuard.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"
#include "tests/substitute/cmpi.nsp/broker/KeptLog.h"

namespace cmpinsp::broker {
namespace {

class ProviderRoutine : public InCall {
 protected:
  ProviderRoutine() { calls = 0; }

  static const CMPIBrokerExtFT& ext() { return kBrokerExtTable; }
  /// A routine to be run once. The first time, it throws.
  static void throwFirst() {
    if (++calls == 1) throw std::runtime_error("kaput");
  }
  /// The same, but it ends its thread.
  static void leaveFirst() {
    if (++calls == 1) ext().exitThread(CMPI_THREAD_RETURN{});
  }
  static CMPI_THREAD_RETURN CMPI_THREAD_CDECL throwAlways(void*) {
    throw std::runtime_error("kaput");
  }
  static CMPI_THREAD_RETURN CMPI_THREAD_CDECL leaveOnce(void* once) {
    ext().threadOnce(static_cast<int*>(once), leaveFirst);
    ++calls;
    return CMPI_THREAD_RETURN{};
  }
  static void throwAtTheEnd(void*) { throw std::runtime_error("not even tidy"); }

  static inline int calls = 0;
  KeptLog log;
};

TEST_F(ProviderRoutine, AnExceptionEndsItsThreadAlone) {
  CMPI_THREAD_RETURN value{};
  EXPECT_EQ(ext().joinThread(ext().newThread(throwAlways, nullptr, 0), &value), 0);
  CMPI_THREAD_RETURN failure;
  std::memset(&failure, 0xFF, sizeof failure);
  EXPECT_EQ(value, failure);
  EXPECT_EQ(log.text(),
            "0 provider TestProvider, a thread's routine: an exception came through the C "
            "interface: kaput\n");
}

// Catches an exception whose text alone fills a log, a report, or a terminal.
TEST(CallGuard, WhatAnExceptionSaysHasAnEnd) {
  const auto said = [](const std::string& text) -> std::string {
    try {
      guardedCall("open", [&]() -> int { throw std::runtime_error(text); });
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "nothing";
  };
  const std::string start = "open: an exception came through the C interface: ";
  EXPECT_EQ(said("kaput"), start + "kaput");
  EXPECT_EQ(said(std::string(4096, 'x')), start + std::string(4096, 'x'));
  EXPECT_EQ(said(std::string(10 << 20, 'x')), start + std::string(4096, 'x') + "...");
  EXPECT_EQ(said(std::string(4095, 'x') + "\xC3\xA4"), start + std::string(4095, 'x') + "...");
}

TEST_F(ProviderRoutine, WhatThrowsOnceIsTriedAgain) {
  int once = 0;
  EXPECT_EQ(ext().threadOnce(&once, throwFirst), EAGAIN);
  EXPECT_EQ(ext().threadOnce(&once, throwFirst), 0);
  EXPECT_EQ(ext().threadOnce(&once, throwFirst), 0);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(log.text(),
            "0 provider TestProvider, threadOnce: an exception came through the C interface: "
            "kaput\n");
}

TEST_F(ProviderRoutine, WhatEndsItsThreadIsTriedAgainByAnother) {
  int once = 0;
  EXPECT_EQ(ext().joinThread(ext().newThread(leaveOnce, &once, 0), nullptr), 0);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(ext().threadOnce(&once, leaveFirst), 0);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(log.text(), "");
}

TEST_F(ProviderRoutine, AThreadEndsThoughTidyingUpThrows) {
  CMPI_THREAD_KEY_TYPE key = 0;
  ext().createThreadKey(&key, throwAtTheEnd);
  std::thread([&] { ext().setThreadSpecific(key, &key); }).join();
  ext().destroyThreadKey(key);
  EXPECT_EQ(log.text(),
            "0 a provider, a thread key's clean-up: an exception came through the C interface: not "
            "even tidy\n");
}

}  // namespace
}  // namespace cmpinsp::broker

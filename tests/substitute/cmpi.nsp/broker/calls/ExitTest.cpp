#include <csignal>
#include <cstdlib>

#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

/// The end of the process in the middle of a call: nothing unwinds the call's frames, and what is
/// static is destroyed while they are still there.
namespace cmpinsp::broker {
namespace {

/// Calls into a static provider that calls back, where `leave` ends the process.
void callAndLeave(void (*leave)()) {
  static FakeUpcalls upcalls;
  static Provider provider("Test", PROVIDER_FILE, upcalls);
  upcalls.failure = leave;
  Arguments out;
  provider.invokeMethod({"root/cimv2", "ACME_Fan", {}}, "CallItself", {}, out);
}

void leaveByExit() { std::exit(7); }

void leaveBySignal() {
  std::signal(SIGTERM, [](int) { std::exit(8); });
  std::raise(SIGTERM);
}

// Catches scopes on the stack that are deleted, and a provider that waits for the call for ever.
TEST(ExitInACall, EndsTheProcessWithItsStatus) {
  EXPECT_EXIT(callAndLeave(leaveByExit), testing::ExitedWithCode(7), "^$");
}

TEST(ExitInACall, OfAHostsSignalHandlerEndsTheProcessWithItsStatus) {
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer ends a process whose signal handler calls exit";
#endif
  EXPECT_EXIT(callAndLeave(leaveBySignal), testing::ExitedWithCode(8), "^$");
}

}  // namespace
}  // namespace cmpinsp::broker
